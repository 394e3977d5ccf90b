// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "base/Result.h"

#include <QJsonObject>
#include <QString>

/// Audio rows as JSON, to be played again later, as PlayLogic::playRow() does, or to be shown. Of a
/// row as its screen lists it, everything is kept that playing and its menu need: texts, which
/// translatable ones stay, picture, paths and the first resource. Only
/// the description of a station is left out: it tells what is on the air. So the address of a row
/// with a step before playing is the one that the step is given, never one that the step returned.
///
/// Names are those of the roles. A translatable text is an object with "context", "text", and, as
/// far as they are not empty, "disambiguation", "count" and "arguments".
///
/// Pure functions, any thread.
namespace KeptRow {

/// The longest path, address and text, in characters.
constexpr int MaxText = 8192;
/// Of one row as JSON, in bytes.
constexpr int MaxBytes = 64 * 1024;

QJsonObject toJson(const VeskRoles &row);
/// From a file, maybe one that somebody else made: wrong types, and members beyond the limits, are
/// failures, and unknown members are dropped. Addresses are http or https. A row belongs to one
/// service: all of its paths have the prefix of its own path, or "player", where plug-ins listen
/// for states; none is the host's. The failure is one line for the log.
Result<VeskRoles, QString> fromJson(const QJsonObject &json);

/// The same as text, in UTF-8; toText() fails for a row that fromJson() would not take.
Result<QByteArray, QString> toText(const VeskRoles &row);
Result<VeskRoles, QString> fromText(const QByteArray &text);

} // namespace KeptRow
