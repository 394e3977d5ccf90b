// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamProblems.h"

#include "host/player/BackOff.h"
#include "host/player/PlayerText.h"

#include <QSet>
#include <QStringList>

#include <algorithm>

namespace {

const QString Hidden = QStringLiteral("***");

/// Whether the query parameter \a name describes the stream and not the listener.
bool isHarmless(const QString &name)
{
    static const QSet<QString> harmless {QStringLiteral("bitrate"), QStringLiteral("channel"),
        QStringLiteral("codec"), QStringLiteral("ext"), QStringLiteral("format"),
        QStringLiteral("formats"), QStringLiteral("lang"), QStringLiteral("language"),
        QStringLiteral("mount"), QStringLiteral("quality"), QStringLiteral("rate"),
        QStringLiteral("render"), QStringLiteral("station"), QStringLiteral("stream"),
        QStringLiteral("type")};
    return harmless.contains(name.toLower());
}

template <class Unit>
QString roundedUp(std::chrono::milliseconds time)
{
    return QString::number(std::chrono::ceil<Unit>(time).count());
}

} // namespace

TrString nothingToHear()
{
    return playerText(QT_TRANSLATE_NOOP("Player", "There is nothing to hear on the stream."));
}

TrString notDecodable()
{
    return playerText(QT_TRANSLATE_NOOP("Player", "The stream cannot be decoded."));
}

StreamOutcome endedByServer()
{
    return {StreamOutcome::Broken,
        playerText(QT_TRANSLATE_NOOP("Player", "The stream's server ended it."))};
}

StreamOutcome neverAStream()
{
    return {StreamOutcome::Refused,
        playerText(QT_TRANSLATE_NOOP("Player", "The playlists never lead to a stream."))};
}

TrString problemWithRetry(const StreamOutcome &outcome, std::chrono::milliseconds wait)
{
    const QString problem = outcome.problem.toString();
    const QString seconds = roundedUp<std::chrono::seconds>(wait);
    if (outcome.retryAfter > BackOff::LongestAsked) {
        return playerText(
            QT_TRANSLATE_NOOP("Player", "%1 It asks for a break of %2 min. Trying again in %3 s."),
            {problem, roundedUp<std::chrono::minutes>(outcome.retryAfter), seconds});
    }
    return playerText(QT_TRANSLATE_NOOP("Player", "%1 Trying again in %2 s."), {problem, seconds});
}

TrString problemWithTry(const StreamOutcome &outcome)
{
    return playerText(
        QT_TRANSLATE_NOOP("Player", "%1 Trying again."), {outcome.problem.toString()});
}

TrString problemWithNextAddress(const StreamOutcome &outcome)
{
    return playerText(
        QT_TRANSLATE_NOOP("Player", "%1 Trying the next address."), {outcome.problem.toString()});
}

QString displayedStreamAddress(const QUrl &url)
{
    QStringList shown;
    const QStringList items
        = url.query(QUrl::FullyEncoded).split(QLatin1Char('&'), Qt::SkipEmptyParts);
    for (const QString &item : items) {
        const int equals = item.indexOf(QLatin1Char('='));
        const QString name = item.left(std::max(equals, 0));
        shown += isHarmless(name) ? item : equals < 0 ? Hidden : name + QLatin1Char('=') + Hidden;
    }
    QUrl address = url;
    address.setQuery(shown.isEmpty() ? QString() : shown.join(QLatin1Char('&')));
    return address.toDisplayString(
        QUrl::RemoveUserInfo | QUrl::RemoveFragment | QUrl::FullyEncoded);
}
