// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskError.h"
#include "base/Result.h"

#include <QByteArray>

#include <string>

/// Rewrites \a data, which simdjson rejected, as strict JSON, if its only faults are those that
/// servers in the field send: control characters, unknown escapes and unpaired surrogates within
/// strings, a decimal point at either end of a number, whole numbers of any length, a byte order
/// mark. Otherwise tells where the text stops being JSON, which simdjson does not.
///
/// QJsonDocument accepts the same faults, but leaks the first of two equal keys' values.
Result<std::string, VeskError> repairJson(const QByteArray &data);
