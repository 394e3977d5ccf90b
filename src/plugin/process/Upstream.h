// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMAbstractWorker.h"

class NodeLink;

/// Everything that a worker process does not have itself: the rest of the host's tree, and whoever
/// else watches it. Any thread.
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
