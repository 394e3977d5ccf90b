// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMValuesWorker.h"
#include "plugin/link/Message.h"

#include <functional>

/// The host's values in a worker process, so that reading a setting costs no trip to the host.
/// Writing one is the host's affair. All calls from any thread.
class ValuesMirror : public CMValuesWorker {
    Q_OBJECT

public:
    /// \a write has the host answer a request.
    explicit ValuesMirror(std::function<void(const CMRequest &)> write, QObject *parent = nullptr);

    /// The host has, or now has, this value.
    void take(const ValueMessage &message);

    void request(CMRequest request) override;

private:
    const std::function<void(const CMRequest &)> m_write;
};
