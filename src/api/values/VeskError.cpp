// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskError.h"

namespace {

VESK_KEY(messageKey, "message")
VESK_KEY(offsetKey, "offset")

} // namespace

VeskError::VeskError(const QString &message, int offset)
{
    insert(messageKey(), message);
    insert(offsetKey(), offset);
}

QString VeskError::message() const
{
    return text(messageKey());
}

int VeskError::offset() const
{
    return number(offsetKey());
}
