// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"

#include <map>
#include <memory>

class CMSubscription;

/// A container that shows the rows of another path, of any worker. Roles without a value of its own
/// are the target's, except for the path. When the target fails, it answers with its own values, or
/// with the target's error when it has none. Redirects in a circle end with an error.
///
/// While it has a subscriber, changes of the target are forwarded. Worker's thread only.
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
    /// To the target, by the path through which this is subscribed to.
    std::map<CMPath, std::unique_ptr<CMSubscription>> m_subscriptions;
};
