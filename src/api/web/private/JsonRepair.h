// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskError.h"
#include "base/Result.h"

#include <QByteArray>

#include <string>

/// Rewrites \a data, which simdjson rejected, as strict JSON, if its only defects are those that
/// servers in the field produce: control characters, unknown escapes and lone surrogates within
/// strings, a decimal point at either end of a number, integers of any length, a byte order mark.
/// Otherwise the error has the offset at which the text stops being JSON, which simdjson does not
/// report.
///
/// QJsonDocument accepts the same defects, but leaks the first value of a duplicate key.
Result<std::string, VeskError> repairJson(const QByteArray &data);
