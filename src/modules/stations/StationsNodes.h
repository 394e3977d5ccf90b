// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"

#include <functional>

/// What a screen shows. Rows are made when they are asked for: those of a long list are many.
struct StationsScreen {
    TrString title;
    CMError error; ///< of a screen that there is not
    QList<VeskRoles> before; ///< the rows before the items
    int items = 0;
    std::function<VeskRoles(int index)> item;
    QList<VeskRoles> after;

    int count() const { return before.size() + items + after.size(); }
    VeskRoles row(int index) const;
};

/// A screen that is put together for each request, of the parameters with which it is opened.
/// Worker's thread only.
class StationsScreenNode : public CMContainerNode {
    Q_OBJECT

public:
    using Build = std::function<StationsScreen(const Params &params)>;

    StationsScreenNode(const CMPath &path, Build build);

    bool getRowsRequest(const CMGetRowsRequest &request) override;
    QVariant getRoleData(const QString &role, const Params &params) override;

private:
    const Build m_build;
};

/// The service's first screen, which by its role "search" leads to the list of searches.
class StationsRootNode : public StationsScreenNode {
    Q_OBJECT

public:
    StationsRootNode(const CMPath &path, Build build, CMContainerNode *searches);

    QVariant getRoleData(const QString &role, const Params &params) override;

private:
    CMContainerNode *const m_searches;
};

/// What has no screen: rows by themselves, actions and values. Answers with the functions that are
/// set; the rest is not accepted.
class StationsNode : public CMUINode {
    Q_OBJECT

public:
    using CMUINode::CMUINode;
    using Get = std::function<VeskRoles(const CMPath &path)>;
    using Set = std::function<void(const CMSetDataRequest &request)>;

    void setGet(Get get) { m_get = std::move(get); }
    /// For requests to set \a role.
    void setSet(const QString &role, Set set);

    QVariant getRoleData(const QString &role, const Params &params) override;
    bool setDataRequest(const CMSetDataRequest &request) override;

private:
    Get m_get;
    QString m_role;
    Set m_set;
};
