// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamTrials.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/core/vesk.h"

#include <algorithm>

VESK_LOGGER("Player")

namespace {

/// Limit of the exponential back-off between rounds.
constexpr int LongestDoublings = 4;

int bitRateOf(const VeskRoles &stream)
{
    return stream.mediaData().activeResource().bitRate();
}

} // namespace

StreamTrials::StreamTrials(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (m_resting)
            goOn();
        else
            leave(false);
    });
}

void StreamTrials::begin(const VeskRoles &row, const CMPath &preferred)
{
    VESK_ASSERT_OWN_THREAD();
    end();
    m_row = row;
    m_choosable = StreamChoice::mayHave(row);
    m_byHand = StreamChoice::isStream(row);
    if (preferred.isEmpty() || m_byHand || !m_choosable)
        return tryNext(row, false);
    m_choice.find(row, [this, preferred](const QList<VeskRoles> &streams) {
        m_streams = streams;
        m_known = !streams.isEmpty();
        const int found = StreamChoice::indexOf(streams, preferred);
        const VeskRoles first = found < 0 ? m_row : streams.at(found);
        m_current = first;
        m_queue = others();
        tryNext(first, false);
    });
}

void StreamTrials::end()
{
    VESK_ASSERT_OWN_THREAD();
    m_timer.stop();
    m_choice.cancel();
    m_row = {};
    m_current = {};
    m_started = {};
    m_interrupted.reset();
    m_streams.clear();
    m_queue.clear();
    m_round = 0;
    m_choosable = m_byHand = m_looking = m_known = m_leaving = m_failed = false;
    m_tryingOther = m_lastChance = m_resting = m_troubled = m_heard = m_audible = false;
}

void StreamTrials::noteStarted(const VeskRoles &stream)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_started.isEmpty())
        return;
    m_started = stream.mediaData().activeResource();
    if (!m_tryingOther)
        m_queue = others();
}

/// A stream picked by the user is not replaced before it was audible, and a file never once it was.
bool StreamTrials::mayGoOn() const
{
    if (!m_choosable || m_lastChance)
        return false;
    return m_heard ? m_row.mediaData().metaData().live() : !m_byHand;
}

void StreamTrials::noteAudible(bool audible)
{
    VESK_ASSERT_OWN_THREAD();
    m_audible = audible;
    if (!audible) {
        if (mayGoOn())
            m_timer.start(m_times.lost);
        return;
    }
    m_timer.stop();
    m_heard = true;
    m_interrupted.reset();
    m_round = 0;
    m_leaving = m_tryingOther = m_lastChance = m_resting = false;
    m_queue = others();
}

void StreamTrials::noteTrouble()
{
    VESK_ASSERT_OWN_THREAD();
    if (m_audible || !mayGoOn())
        return;
    look();
    if (m_heard || m_troubled || m_leaving)
        return;
    m_troubled = true;
    if (m_timer.remainingTime() > m_times.trouble)
        m_timer.start(m_times.trouble);
}

void StreamTrials::noteFailure()
{
    VESK_ASSERT_OWN_THREAD();
    if (!mayGoOn()) {
        m_timer.stop();
        Q_EMIT exhausted();
    } else {
        if (!m_resting)
            m_timer.stop();
        leave(true);
    }
}

void StreamTrials::pause()
{
    VESK_ASSERT_OWN_THREAD();
    m_timer.stop();
    m_choice.cancel();
    m_looking = m_leaving = m_resting = false;
}

void StreamTrials::resume()
{
    VESK_ASSERT_OWN_THREAD();
    if (mayGoOn())
        m_timer.start(m_times.lost);
}

void StreamTrials::look()
{
    if (m_looking || m_known)
        return;
    m_looking = true;
    m_choice.find(m_row, [this](const QList<VeskRoles> &streams) {
        m_looking = false;
        m_known = !streams.isEmpty();
        m_streams = streams;
        m_queue = others();
        if (m_leaving)
            goOn();
    });
}

/// Leaves the current stream as soon as another one is known.
void StreamTrials::leave(bool failed)
{
    m_failed = failed;
    if (!failed && !m_heard && !m_interrupted)
        m_interrupted = m_current;
    if (m_leaving)
        return;
    m_leaving = true;
    Q_EMIT goingOnChanged();
    look();
    if (m_known && m_leaving)
        goOn();
}

void StreamTrials::goOn()
{
    if (!m_queue.isEmpty())
        return tryNext(m_queue.takeFirst(), true);
    if (m_heard && m_streams.size() > 1)
        return restBeforeNextRound();
    if (!m_heard && m_interrupted)
        return tryLastChance();
    m_leaving = false;
    if (m_failed)
        return Q_EMIT exhausted();
    // The list of streams may be unavailable for the same reason as the station: try again later.
    if (m_heard && !m_known)
        m_timer.start(m_times.lost << qMin(m_round++, LongestDoublings));
    Q_EMIT goingOnChanged();
}

/// Plays the stream that was left first once more, for as long as the player keeps trying. If it is
/// still playing because there is no other, it just continues.
void StreamTrials::tryLastChance()
{
    const VeskRoles stream = *m_interrupted;
    m_interrupted.reset();
    m_lastChance = true;
    const bool plays = !m_failed && !m_tryingOther;
    m_leaving = m_tryingOther = false;
    if (plays)
        Q_EMIT goingOnChanged();
    else
        tryNext(stream, false);
}

void StreamTrials::tryNext(const VeskRoles &stream, bool other)
{
    if (other) {
        VESK_INFO("trying another stream of "
            << m_row.title() << ": " << stream.mediaData().activeResource().bitRate() << " bit/s");
    }
    m_current = stream;
    m_tryingOther = other;
    m_leaving = m_failed = m_resting = m_troubled = false;
    if (mayGoOn())
        m_timer.start(m_heard ? m_times.lost : m_times.patience);
    Q_EMIT next(stream);
}

void StreamTrials::restBeforeNextRound()
{
    m_queue = others();
    m_queue.prepend(m_row);
    m_resting = true;
    m_timer.start(m_times.rest << qMin(m_round++, LongestDoublings));
}

/// The other streams, highest bit rate first. The service lists only those that the device can
/// play.
QList<VeskRoles> StreamTrials::others() const
{
    QList<VeskRoles> streams;
    for (const VeskRoles &stream : m_streams) {
        const bool isPresent = stream.path() == m_current.path()
            || stream.mediaData().activeResource().uri() == m_started.uri();
        if (!isPresent)
            streams.append(stream);
    }
    std::stable_sort(streams.begin(), streams.end(),
        [](const VeskRoles &a, const VeskRoles &b) { return bitRateOf(a) > bitRateOf(b); });
    if (streams.size() < m_streams.size() || m_started.isEmpty())
        return streams;
    // The service's own pick is among the streams, but under another address: most likely the first
    // one of the same bit rate. It was tried already, so it comes last.
    const auto same = std::find_if(streams.begin(), streams.end(),
        [this](const VeskRoles &stream) { return bitRateOf(stream) == m_started.bitRate(); });
    if (same != streams.end())
        std::rotate(same, same + 1, streams.end());
    return m_streams.size() > 1 ? streams : QList<VeskRoles>();
}
