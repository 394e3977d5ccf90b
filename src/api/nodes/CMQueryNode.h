// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/nodes/CMUINode.h"

/// A row with a text field: the screen at the query path, with the user's text as the parameter
/// that setQuery() names, shows the results.
class VESK_API CMQueryNode : public CMUINode {
    Q_OBJECT

public:
    static CMQueryNode *create(CMNodes *nodes, const CMPath &path);

    void setQuery(const QString &key) { m_query = key; }
    void setQueryPath(const CMPath &path) { m_queryPath = path; }

    QVariant getRoleData(const QString &role, const Params &params) override;

private:
    explicit CMQueryNode(const CMPath &path);

    QString m_query;
    CMPath m_queryPath;
};
