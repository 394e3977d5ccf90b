// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// A literal as Qt's text.
inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}
