// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMRequest.h"
#include "api/nodes/CMSubscribe.h"

#include <QMutex>
#include <QObject>

class CMNodes;

/// Answers requests for one path of a worker, and for the paths below it unless
/// setServesBelow(false) says otherwise. Lives on the worker's thread and is called there only.
/// Create it, then register it with setNodes(): the worker's registry owns it from then on.
///
/// A handler returns whether it accepted the request; the outcome goes into the request's reply,
/// now or later. A request that is not accepted, or whose reply is dropped, ends with an error.
class VESK_API CMNode : public QObject {
    Q_OBJECT

public:
    explicit CMNode(const CMPath &path, QObject *parent = nullptr);
    ~CMNode() override;

    const CMPath &path() const { return m_path; }
    void setNodes(CMNodes *nodes);
    CMNodes *nodes() const { return m_nodes; }
    /// For notifying subscribers of changes; null while the node is in no registry.
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

    /// \a path, which this node serves, got its first subscriber; its last subscription ended. A
    /// subscription covers rows, data and value alike.
    virtual void rowsPathAdd(const CMPath &path);
    virtual void rowsPathRemove(const CMPath &path);

protected:
    void setServesBelow(bool below) { m_servesBelow = below; }
    /// Forwards \a request to the node that serves its path, here or in another worker.
    void ask(const CMRequest &request) const;

private:
    const CMPath m_path;
    CMNodes *m_nodes = nullptr;
    QMutex m_mutex;
    bool m_servesBelow = true;
};
