// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/UnknownWords.h"

#include <QVector>

#include <algorithm>
#include <optional>

namespace {

/// How many letters must be added, left out, changed or swapped with their neighbour.
int distance(const QString &a, const QString &b)
{
    QVector<QVector<int>> rows(a.size() + 1, QVector<int>(b.size() + 1, 0));
    for (int i = 0; i <= a.size(); ++i) {
        for (int j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                rows[i][j] = i + j;
                continue;
            }
            const int change = a.at(i - 1) == b.at(j - 1) ? 0 : 1;
            int least
                = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                least = std::min(least, rows[i - 2][j - 2] + 1);
            rows[i][j] = least;
        }
    }
    return rows[a.size()][b.size()];
}

QString complaint(const QString &word, const char *kind, const QStringList &known)
{
    const QString meant = nearest(word, known);
    const QString text = QStringLiteral("\"%1\" is no %2").arg(word.left(100), QLatin1String(kind));
    if (!meant.isEmpty())
        return QStringLiteral("%1; did you mean \"%2\"?").arg(text, meant);
    return QStringLiteral("%1; there are: %2").arg(text, known.join(QLatin1String(", ")));
}

} // namespace

QString nearest(const QString &word, const QStringList &candidates)
{
    constexpr int MaxWord = 100;
    if (word.size() > MaxWord)
        return {};
    QString best;
    int least = word.size() < 4 ? 2 : 3;
    for (const QString &candidate : candidates) {
        // A beginning is as good as one slip.
        const int far = word.size() > 1 && candidate.startsWith(word)
            ? 1
            : distance(word.toLower(), candidate);
        if (far < least) {
            least = far;
            best = candidate;
        }
    }
    return best;
}

QString complainOfUnknownWord(const Command &program, const QStringList &arguments)
{
    Command at = program;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &word = arguments.at(i);
        if (word == QLatin1String("--"))
            break;
        if (word.startsWith(QLatin1Char('-')) && word.size() > 1) {
            const QString name = word.section(QLatin1Char('='), 0, 0);
            const std::optional<bool> hasValue = at.takesValue(name);
            if (!hasValue)
                return complaint(name, "option", at.options());
            if (*hasValue && !word.contains(QLatin1Char('=')))
                ++i;
            continue;
        }
        const QStringList names = at.commands();
        if (names.isEmpty())
            continue;
        const std::optional<Command> command = at.command(word);
        if (!command)
            return complaint(word, "command", names);
        at = *command;
    }
    return {};
}
