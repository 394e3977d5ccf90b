// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"
#include "api/values/VeskRoles.h"

/// The answer to a request for rows: how many rows the screen has in all ("rowsCount"), the rows
/// asked for ("rows": one list per row, with a value per requested role, in the request's order)
/// and the roles of the screen itself ("roles").
class VESK_API VeskRowsRoles : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskRowsRoles() = default;
    VeskRowsRoles(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    int rowsCount() const;
    /// Whether this is an answer, and the screen has no rows.
    bool isWithoutRows() const;
    QVariantList rows() const;
    VeskRoles roles() const;

    void setRowsCount(int count);
    void setRows(const QVariantList &rows);
    void setRoles(const VeskRoles &roles);
};
