// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMUINode.h"

#include <QVector>

/// A node that opens into a screen of rows. Worker's thread only.
class VESK_API CMContainerNode : public CMUINode {
    Q_OBJECT

public:
    using CMUINode::CMUINode;

    void setContainerType(VeskRolesContainerType type) { m_containerType = type; }
    /// Whether the container holds something that can be played.
    void setPlayable(bool playable) { m_playable = playable; }

    QVariant getRoleData(const QString &role, const Params &params) override;
    /// Tells the subscribers of every screen of this node to read it again.
    void languageChanged() override;

protected:
    /// Completes \a request, given \a rows, all of this node's rows as it is opened by the
    /// request's path: with the rows of the requested range, their requested roles, and the roles
    /// of the screen. A range that is not valid is answered with an error. For subclasses whose
    /// rows are at hand; with many of them, only those of the range should be made.
    void answerRows(const CMGetRowsRequest &request, const QVector<VeskRoles> &rows);

private:
    VeskRolesContainerType m_containerType = VeskRolesContainerType::List;
    bool m_playable = false;
};
