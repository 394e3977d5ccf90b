// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/apinote.h"
#include "api/nodes/CMNodes.h"
#include "api/nodes/CMWorker.h"

/// A worker whose nodes answer: each request goes to the node at its path. A request for a path
/// without a node, or one that its node does not accept, is answered with an error. Owns its nodes;
/// they live on its thread and are destroyed with it.
class VESK_API CMNodesWorker : public CMWorker {
    Q_OBJECT

public:
    CMNodesWorker(const QVariantHash &config, const QString &name);
    ~CMNodesWorker() override;

    /// The registry of the worker's nodes.
    CMNodes *nodes() { return &m_nodes; }

    /// Each answers through the node at the request's path; false when there is no such node or it
    /// did not accept the request. Worker's thread.
    virtual bool getDataRequest(const CMGetDataRequest &request);
    virtual bool getRowsRequest(const CMGetRowsRequest &request);
    virtual bool matchRowRequest(const CMMatchRowRequest &request);
    virtual bool setDataRequest(const CMSetDataRequest &request);

    /// With the path and class of each node.
    void trace() override;

protected:
    bool handleRequest(const CMRequest &request) override;
    void handleConnectChange(const CMPath &path) override;
    void handleDisconnectChange(const CMPath &path) override;
    void handleLanguageChanged() override;

private:
    bool askNode(const CMRequest &request);

    CMNodes m_nodes;
};
