// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamText.h"

#include "api/core/utf8.h"

namespace {

constexpr int MaxLength = 512;

} // namespace

QString streamText(const QByteArray &bytes)
{
    QString text = veskUtf8OrLatin1(bytes);
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char(' ');
    }
    text = text.trimmed().left(MaxLength);
    // Do not cut a surrogate pair in two.
    if (!text.isEmpty() && text.at(text.size() - 1).isHighSurrogate())
        text.chop(1);
    return text.isNull() ? QStringLiteral("") : text;
}
