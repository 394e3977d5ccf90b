// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskHash.h"

/// Why data could not be parsed: "message" and "offset" (bytes from the start). Empty on success.
class VESK_API VeskError : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskError() = default;
    VeskError(const QString &message, int offset);

    QString message() const;
    int offset() const;
};
