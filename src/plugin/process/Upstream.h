// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMAbstractWorker.h"

class NodeLink;

/// The host's tree as the default worker of a plug-in process: requests and subscriptions for
/// whatever the process does not serve itself. Any thread.
class Upstream : public CMAbstractWorker {
    Q_OBJECT

public:
    /// \a link leads to the host, and must outlive it.
    explicit Upstream(NodeLink *link, QObject *parent = nullptr);

    void request(CMRequest request) override;
    void connectChange(const CMPath &path) override;
    void disconnectChange(const CMPath &path) override;

private:
    NodeLink *const m_link;
};
