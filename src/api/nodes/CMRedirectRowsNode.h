// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"

#include <map>
#include <memory>

class CMSubscription;

/// A container that shows the rows of another path, of any worker. Roles that it has no value for
/// are the target's, except for its path. When the target fails, it answers with what it has of its
/// own, or with the target's error when that is nothing. Redirects in a circle end with an error.
///
/// While someone is subscribed to it, changes of the target are passed on. Worker's thread only.
class VESK_API CMRedirectRowsNode : public CMContainerNode {
    Q_OBJECT

public:
    static CMRedirectRowsNode *create(CMNodes *nodes, const CMPath &path, const CMPath &target);
    ~CMRedirectRowsNode() override;

    bool getRowsRequest(const CMGetRowsRequest &request) override;
    bool matchRowRequest(const CMMatchRowRequest &request) override;
    bool getDataRequest(const CMGetDataRequest &request) override;
    void rowsPathAdd(const CMPath &path) override;
    void rowsPathRemove(const CMPath &path) override;

private:
    CMRedirectRowsNode(const CMPath &path, const CMPath &target);

    const CMPath m_target;
    /// Of the target, by the path by which this is subscribed to.
    std::map<CMPath, std::unique_ptr<CMSubscription>> m_subscriptions;
};
