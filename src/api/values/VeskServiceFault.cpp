// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskServiceFault.h"

namespace {

constexpr int Unauthorized = 401;
constexpr int Forbidden = 403;

} // namespace

bool VeskServiceFault::isRefusal() const
{
    return (kind == HttpStatus || kind == Reported) && (code == Unauthorized || code == Forbidden);
}
