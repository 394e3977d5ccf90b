// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/SpokenExcuses.h"

void SpokenExcuses::add(const QString &file, const TrString &words)
{
    QString pattern = QRegularExpression::escape(file);
    pattern.replace(QStringLiteral("\\*"), QStringLiteral("[^/]*"));
    m_excuses.append(
        {QRegularExpression(pattern + QLatin1Char('$'), QRegularExpression::CaseInsensitiveOption),
            words});
}

TrString SpokenExcuses::wordsOf(const QUrl &url) const
{
    for (const auto &[file, words] : m_excuses) {
        if (file.match(url.path()).hasMatch())
            return words;
    }
    return {};
}
