// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <string>

/// What simdjson reads of a text that it rejected.
struct RepairedJson {
    std::string text;
    /// Null when \a text is JSON, otherwise what the original is not read for, and where.
    const char *message = nullptr;
    int offset = 0;
};

/// Makes JSON as simdjson reads it of what servers in the field send and QJsonDocument reads:
/// control characters and unknown escapes within strings, half surrogate pairs, whole numbers of
/// any length, a byte order mark. Finds where that fails, as simdjson does not tell. QJsonDocument
/// itself is no help here: it leaks what an object holds under the first of two equal keys.
RepairedJson repairJson(const QByteArray &data);

/// The offset of the first byte that is no UTF-8; -1 when there is none.
int invalidUtf8At(const QByteArray &data);
