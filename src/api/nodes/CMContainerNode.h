// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMUINode.h"

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

private:
    VeskRolesContainerType m_containerType = VeskRolesContainerType::List;
    bool m_playable = false;
};
