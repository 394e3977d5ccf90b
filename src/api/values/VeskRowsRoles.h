// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"
#include "api/values/VeskRoles.h"

/// The response to a request for rows: the total number of rows of the screen ("rowsCount"), the
/// requested rows ("rows": one list per row, with a value per requested role, in the request's
/// order) and the roles of the screen itself ("roles").
class VESK_API VeskRowsRoles : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskRowsRoles() = default;
    VeskRowsRoles(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    int rowsCount() const;
    /// Whether this is the response of an empty screen: unlike rowsCount(), false for an empty
    /// hash.
    bool isWithoutRows() const;
    QVariantList rows() const;
    VeskRoles roles() const;

    void setRowsCount(int count);
    void setRows(const QVariantList &rows);
    void setRoles(const VeskRoles &roles);
};
