// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMContainerNode.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

class CMSubscription;

/// A container with a fixed list of rows: given roles, or paths of other nodes (of any worker) that
/// are asked for their roles each time. A row whose node fails has null for every role but its
/// path. The answer is complete when all rows have answered; the worker's thread does not block for
/// it.
///
/// While the list has a subscriber, a changed value or a reset at a row's path is forwarded as a
/// change of that row, unless the reset covers the list too. Changes of the rows of a row's own
/// screen are not forwarded.
///
/// Worker's thread only.
class VESK_API CMListRowsNode : public CMContainerNode {
    Q_OBJECT

public:
    static CMListRowsNode *create(CMNodes *nodes, const CMPath &path);
    ~CMListRowsNode() override;

    void rowsAppend(const CMPath &path);
    void rowsAppend(const VeskRoles &roles);
    /// A row at \a path that has \a roles whatever its node answers for them. For these alone, and
    /// its path, the node is not asked.
    void rowsAppend(const CMPath &path, const VeskRoles &roles);
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
    struct Row {
        CMPath path; ///< empty: all that there is of the row is given
        VeskRoles given;
    };
    using Collected = std::function<void(const QVariantList &rows)>;
    class Collector;

    CMPath rowPath(const CMPath &row, const CMPath &opened) const;
    void append(Row row);
    void collect(
        const CMPath &opened, const QStringList &roles, int first, int last, Collected collected);
    void follow(const CMPath &opened, int row);

    std::vector<Row> m_rows;
    bool m_copyPathParams = false;
    /// To the rows, by the path through which the list is subscribed to.
    std::map<CMPath, std::vector<std::unique_ptr<CMSubscription>>> m_subscriptions;
};
