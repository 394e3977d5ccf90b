// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QPair>
#include <QRegularExpression>
#include <QUrl>
#include <QVector>

/// Addresses of spoken messages ("not available in your country") that services return in place of
/// a stream, with the text of each message. A value type; safe to read from any thread.
class SpokenExcuses {
public:
    /// \a file is the end of the address's path, case-insensitive; "*" matches any characters but a
    /// slash.
    void add(const QString &file, const TrString &words);
    /// The text of the message; empty for any other address.
    TrString wordsOf(const QUrl &url) const;

private:
    QVector<QPair<QRegularExpression, TrString>> m_excuses;
};
