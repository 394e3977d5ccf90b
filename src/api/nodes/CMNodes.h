// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/ThreadCheck.h"
#include "api/core/export.h"
#include "api/nodes/CMRequest.h"
#include "api/nodes/CMSubscribe.h"
#include "api/values/CMPath.h"

#include <QHash>
#include <QList>
#include <QString>

#include <set>

class CMNode;
class CMNodesWorker;

/// The nodes of one worker, by path; owns them. Worker's thread only.
class VESK_API CMNodes {
public:
    explicit CMNodes(CMNodesWorker *worker);
    CMNodes(const CMNodes &) = delete;
    CMNodes &operator=(const CMNodes &) = delete;
    ~CMNodes();

    /// Takes ownership of \a node and registers it at its path, which must be free; parameters do
    /// not matter. For a path that is not under the worker's own prefix the root gets a route.
    void add(CMNode *node);
    /// Unregisters \a node, which is being destroyed.
    void remove(CMNode *node);

    /// The node at the longest path that the base of \a path equals or continues at a "/"; null
    /// when there is none, or when that node does not serve what lies below it.
    CMNode *find(const CMPath &path) const;
    /// Forwards \a request: to this worker when one of its nodes serves the path, else to the root.
    /// An empty request is ignored.
    void request(const CMRequest &request) const;

    /// Notifies the node at \a path of its first subscriber, and of the end of its last
    /// subscription. A node that is added later is notified when it is added.
    void subscribed(const CMPath &path);
    void unsubscribed(const CMPath &path);

    CMNodesWorker *worker() const { return m_worker; }
    CMSubscribe *subscribe() { return &m_subscribe; }
    /// In the order in which they were added.
    QList<CMNode *> all() const { return m_order; }

private:
    const VeskThreadCheck m_thread;
    CMNodesWorker *const m_worker;
    CMSubscribe m_subscribe;
    QHash<QString, QHash<QString, CMNode *>> m_byBase; ///< by prefix, then base
    QList<CMNode *> m_order;
    std::set<CMPath> m_subscribed;
};
