// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRequest.h"

#include <QObject>
#include <QVariantHash>

#include <functional>

/// The host's side of a plug-in's store (VeskStore). It outlives the plug-in.
class PluginStoreAccess {
public:
    virtual ~PluginStoreAccess() = default;

    /// The prefix of all stores' paths. Each plug-in can reach its own one only, and nobody else
    /// any of them.
    static QString prefix() { return QStringLiteral("store"); }

    virtual const CMPath &path() const = 0;
    /// For the plug-in's configuration: the path, and the values that are on the disk.
    virtual QVariantHash config() const = 0;
    /// Calls \a function through \a context's event loop once no write is in progress, so that
    /// config() holds what a former start of the plug-in wrote. Main thread.
    virtual void whenSettled(QObject *context, std::function<void()> function) = 0;
    /// A request of the plug-in to path(). Any thread.
    virtual void request(const CMRequest &request) = 0;
};
