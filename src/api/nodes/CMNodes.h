// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

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

    /// Takes \a node in at its path, which must be free; parameters do not matter. A path that is
    /// not under the worker's own prefix is announced at the root, which then routes it here.
    void add(CMNode *node);
    /// Forgets \a node, which is being destroyed.
    void remove(CMNode *node);

    /// The node at the longest path that the base of \a path equals or continues at a "/"; null
    /// when there is none, or when that node does not serve what lies below it.
    CMNode *find(const CMPath &path) const;
    /// Passes \a request on: to this worker when one of its nodes serves the path, else to the
    /// root. An empty request is ignored.
    void request(const CMRequest &request) const;

    /// Tells the node at \a path of its first subscriber, and of its last one's leaving. A node
    /// that comes later is told when it comes.
    void subscribed(const CMPath &path);
    void unsubscribed(const CMPath &path);

    CMNodesWorker *worker() const { return m_worker; }
    CMSubscribe *subscribe() { return &m_subscribe; }
    /// In the order in which they came.
    QList<CMNode *> all() const { return m_order; }

private:
    CMNodesWorker *const m_worker;
    CMSubscribe m_subscribe;
    QHash<QString, QHash<QString, CMNode *>> m_byBase; ///< by prefix, then base
    QList<CMNode *> m_order;
    std::set<CMPath> m_subscribed;
};
