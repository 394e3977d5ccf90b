// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"

#include <functional>
#include <map>
#include <memory>
#include <variant>
#include <vector>

class CMSubscription;

/// A container whose rows are a fixed list: roles given as they are, or paths of other nodes (of
/// any worker) that are asked for their roles each time. A row whose node fails is a row of nulls
/// but for its path. The answer comes when all rows have answered; the worker's thread does not
/// wait for it.
///
/// While someone is subscribed to the list, a change of a row path's value, or its reset, is passed
/// on as a change of that row, unless the reset was told of everything from the list or above it
/// on. What happens to the rows of a row's own screen is none.
///
/// Worker's thread only.
class VESK_API CMListRowsNode : public CMContainerNode {
    Q_OBJECT

public:
    static CMListRowsNode *create(CMNodes *nodes, const CMPath &path);
    ~CMListRowsNode() override;

    void rowsAppend(const CMPath &path);
    void rowsAppend(const VeskRoles &roles);
    /// Whether the parameters of the path by which the list is opened are added to the paths of its
    /// rows; a parameter that a row has of its own stays. Rows given as roles stay as they are.
    void setCopyPathParams(bool copy) { m_copyPathParams = copy; }

    bool getRowsRequest(const CMGetRowsRequest &request) override;
    bool matchRowRequest(const CMMatchRowRequest &request) override;
    void rowsPathAdd(const CMPath &path) override;
    void rowsPathRemove(const CMPath &path) override;

protected:
    explicit CMListRowsNode(const CMPath &path);

private:
    using Row = std::variant<CMPath, VeskRoles>;
    using Collected = std::function<void(const QVariantList &rows)>;
    class Collector;

    CMPath rowPath(const CMPath &row, const CMPath &opened) const;
    void append(Row row);
    void collect(
        const CMPath &opened, const QStringList &roles, int first, int last, Collected collected);
    void follow(const CMPath &opened, int row);

    std::vector<Row> m_rows;
    bool m_copyPathParams = false;
    /// Of the rows, by the path by which the list is subscribed to.
    std::map<CMPath, std::vector<std::unique_ptr<CMSubscription>>> m_subscriptions;
};
