// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskRowsRoles.h"

#include "api/values/variants.h"

namespace {

namespace keys {
VESK_KEY(rowsCount, "rowsCount")
VESK_KEY(rows, "rows")
VESK_KEY(roles, "roles")
} // namespace keys

} // namespace

int VeskRowsRoles::rowsCount() const
{
    return number(keys::rowsCount());
}

bool VeskRowsRoles::isWithoutRows() const
{
    const QVariant *const count = find(keys::rowsCount());
    return count && count->toInt() == 0;
}

QVariantList VeskRowsRoles::rows() const
{
    return veskListIn(value(keys::rows()));
}

VeskRoles VeskRowsRoles::roles() const
{
    return hash(keys::roles());
}

void VeskRowsRoles::setRowsCount(int count)
{
    insert(keys::rowsCount(), count);
}

void VeskRowsRoles::setRows(const QVariantList &rows)
{
    insert(keys::rows(), rows);
}

void VeskRowsRoles::setRoles(const VeskRoles &roles)
{
    insert(keys::roles(), roles);
}
