// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/nodes/CMNode.h"
#include "api/values/VeskMediaData.h"
#include "api/values/VeskRoles.h"

/// A node with a place on a screen: answers data requests with a value per role. Worker's thread
/// only.
class VESK_API CMUINode : public CMNode {
    Q_OBJECT

public:
    using Params = QMap<QString, QString>;
    using CMNode::CMNode;

    void setTitle(const TrString &title) { m_title = title; }
    void setDescription(const TrString &description) { m_description = description; }
    void setIcon(const QString &icon) { m_icon = icon; }
    void setMediaData(const VeskMediaData &mediaData) { m_mediaData = mediaData; }
    /// A disabled node is shown but cannot be used. Notifies subscribers.
    virtual void setDisabled(bool disabled);

    /// The value of \a role for this node opened with \a params; null for a role it does not
    /// answer.
    virtual QVariant getRoleData(const QString &role, const Params &params);
    /// All of \a roles (CMAllRoles(): every role) that this node answers, opened with \a params;
    /// with "path", the node's path with \a params added, in any case.
    VeskRoles getDataRoles(const QStringList &roles, const Params &params);

    bool getDataRequest(const CMGetDataRequest &request) override;

    /// The UI language changed: tells subscribers to read the texts again.
    virtual void languageChanged();

protected:
    /// The node's path with \a params added.
    CMPath opened(const Params &params) const;
    /// \a roles, or every role's name when they are CMAllRoles().
    static const QStringList &named(const QStringList &roles);

private:
    TrString m_title;
    TrString m_description;
    QString m_icon;
    VeskMediaData m_mediaData;
    bool m_disabled = false;
};
