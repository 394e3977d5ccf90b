// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRequest.h"
#include "api/nodes/CMSubscribe.h"

#include <QMutex>
#include <QObject>

class CMNodes;

/// What answers at one path of a worker, and at the paths below it unless setServesBelow(false)
/// says otherwise. Lives on the worker's thread and is called there only. Create it, then hand it
/// to the worker's registry with setNodes, which owns it from then on.
///
/// A handler returns whether it took the request; the outcome goes into the request's reply, now or
/// later. A request that is not taken, or whose reply is let go unanswered, ends with an error.
class VESK_API CMNode : public QObject {
    Q_OBJECT

public:
    explicit CMNode(const CMPath &path, QObject *parent = nullptr);
    ~CMNode() override;

    const CMPath &path() const { return m_path; }
    void setNodes(CMNodes *nodes);
    CMNodes *nodes() const { return m_nodes; }
    /// For telling subscribers of changes; null while the node is in no registry.
    CMSubscribe *subscribe() const;
    bool servesBelow() const { return m_servesBelow; }

    /// For a node that guards its own state.
    virtual QMutex *mutex();
    /// Calls the handler for the request's kind.
    virtual bool request(const CMRequest &request);

    virtual bool getDataRequest(const CMGetDataRequest &request);
    virtual bool getRowsRequest(const CMGetRowsRequest &request);
    virtual bool matchRowRequest(const CMMatchRowRequest &request);
    virtual bool setDataRequest(const CMSetDataRequest &request);

    /// The first subscriber of \a path, which this node serves, came; the last one went. A
    /// subscription concerns rows, data and value alike.
    virtual void rowsPathAdd(const CMPath &path);
    virtual void rowsPathRemove(const CMPath &path);

protected:
    void setServesBelow(bool below) { m_servesBelow = below; }
    /// Passes \a request on to whoever serves its path, here or in another worker.
    void ask(const CMRequest &request) const;

private:
    const CMPath m_path;
    CMNodes *m_nodes = nullptr;
    QMutex m_mutex;
    bool m_servesBelow = true;
};
