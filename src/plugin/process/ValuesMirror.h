// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMValuesWorker.h"
#include "plugin/link/Message.h"

#include <functional>

/// The host's values in a plug-in process, so that reading a setting costs no round trip. Writing
/// one is left to the host. Any thread.
class ValuesMirror : public CMValuesWorker {
    Q_OBJECT

public:
    /// \a write sends a request to the host.
    explicit ValuesMirror(std::function<void(const CMRequest &)> write, QObject *parent = nullptr);

    /// The host has this value now.
    void apply(const ValueMessage &message);

    void request(CMRequest request) override;

private:
    const std::function<void(const CMRequest &)> m_write;
};
