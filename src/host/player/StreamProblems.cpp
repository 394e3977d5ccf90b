// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamProblems.h"

#include "host/player/BackOff.h"
#include "host/player/StreamReceivers.h"

#include <algorithm>

namespace {

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
