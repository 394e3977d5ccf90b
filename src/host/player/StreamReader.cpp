// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/StreamReader.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/player/HlsStream.h"
#include "host/player/PlaceFinder.h"
#include "host/player/PlayerText.h"
#include "host/player/Playlist.h"
#include "host/player/StreamConsumer.h"
#include "host/player/StreamProblems.h"
#include "host/player/StreamReceivers.h"

#include <algorithm>
#include <utility>

VESK_LOGGER("Player")

namespace {

/// How long a decoder may take to produce its first samples, or further ones.
constexpr std::chrono::milliseconds DecoderStart {1000};

bool mayGoOn(StreamOutcome::Kind kind)
{
    // Ended, Hopeless and Stopped are final.
    return kind == StreamOutcome::Broken || kind == StreamOutcome::Refused;
}

} // namespace

StreamReader::StreamReader(const StreamSource &source, StreamConsumer &consumer, const Times &times)
    : m_source(source)
    , m_consumer(consumer)
    , m_times(times)
    , m_http(times.http)
    , m_feed(consumer, [this] { return goOn(); })
    , m_sleep(times.sleep, times.sinceBoot)
{
    if (!source.live && source.start.position.count() > 0)
        m_startAt = source.start;
    static const int registered = qRegisterMetaType<TrString>("TrString");
    Q_UNUSED(registered)
}

StreamReader::~StreamReader()
{
    stop();
    wait();
}

void StreamReader::stop()
{
    m_wait.stop();
    m_http.interrupt();
}

void StreamReader::run()
{
    veskSetThreadName(QStringLiteral("StreamReader"));
    m_start = Clock::now();
    for (;;) {
        StreamOutcome outcome = playOnce();
        if (outcome.kind == StreamOutcome::Ended && m_source.live)
            outcome = rejoin();
        const bool ended = outcome.kind == StreamOutcome::Ended;
        const bool again = !ended && !isGivenUp(outcome) && waitBeforeRetry(outcome);
        if (m_wait.isStopped())
            return;
        if (m_slept) {
            VESK_INFO("The machine slept; joining the station anew.");
            Q_EMIT fellBehind();
            return;
        }
        if (ended) {
            Q_EMIT this->ended();
            return;
        }
        if (!again) {
            VESK_WARN("giving up: " << outcome.problem);
            Q_EMIT gaveUp(outcome.problem);
            return;
        }
    }
}

/// Tries the address that delivered audio last, then the source from its own address on.
StreamOutcome StreamReader::playOnce()
{
    m_tried.clear();
    ++m_round;
    if (!m_current.isEmpty() && m_current != m_source.url) {
        const QUrl current = std::exchange(m_current, {});
        const StreamOutcome outcome = playAddress(current, 0, true);
        if (!mayGoOn(outcome.kind) || !m_current.isEmpty() || isOver())
            return outcome;
        tell(problemWithNextAddress(outcome));
        if (current == m_lastFinished)
            // A station (see rejoin()): its end was a break, so its entries count as unplayed.
            m_finished.clear();
    }
    m_current.clear();
    const bool isFound = m_startAt && !m_startAt->url.isEmpty();
    return playAddress(isFound ? m_startAt->url : m_source.url, 0, m_source.hasAlternatives);
}

/// Tries each address once per round. A playlist that leads back to itself meets the preliminary
/// entry in m_tried, which counts as refused.
StreamOutcome StreamReader::playAddress(const QUrl &url, int depth, bool othersFollow)
{
    if (m_finished.contains(url))
        return {StreamOutcome::Ended, {}};
    const auto tried = m_tried.constFind(url);
    if (tried != m_tried.constEnd())
        return *tried;
    m_tried.insert(url, neverAStream());
    const StreamOutcome outcome = openAddress(url, depth, othersFollow);
    m_tried.insert(url, outcome);
    return outcome;
}

StreamOutcome StreamReader::openAddress(const QUrl &url, int depth, bool othersFollow)
{
    if (!pace())
        return {StreamOutcome::Stopped, nothingToHear()};
    VESK_DEBUG("opening " << displayedStreamAddress(url));
    m_opened = Clock::now();
    m_feed.open();
    AudioReceiver receiver(m_feed, m_source.excuses);
    if (m_startAt && m_startAt->url == url)
        receiver.beginAt(*m_startAt);
    else if (!m_source.live)
        receiver.expectFile(url, m_startAt.has_value());
    HttpStreamResult result
        = m_http.get({url, receiver.received(), patience(othersFollow)}, receiver);
    if (result.kind == HttpStreamResult::Complete || result.kind == HttpStreamResult::Closed)
        receiver.complete();
    if (receiver.hasHead())
        return playFrom(url, receiver, othersFollow);

    if (isPlaylist(receiver.content())) {
        if (depth >= PlaylistLimits::MaxDepth)
            return neverAStream();
        return playEntries(parsePlaylist(receiver.text(), receiver.content(), receiver.head().url),
            depth + 1, othersFollow);
    }
    const bool isHls = receiver.content() == StreamContent::Hls;
    const StreamOutcome outcome
        = finish(isHls ? playHls(url, receiver) : playAudio(url, receiver, std::move(result)));
    if (outcome.kind == StreamOutcome::Ended) {
        m_finished.insert(url);
        m_lastFinished = url;
    } else if (wasGood()) {
        m_current = url;
    }
    return outcome;
}

/// Plays a file of which only the beginning was received so far, from the place where it is to
/// begin. From its beginning if that place cannot be found.
StreamOutcome StreamReader::playFrom(
    const QUrl &url, const AudioReceiver &receiver, bool othersFollow)
{
    m_startAt = findStart(receiver.file());
    if (isOver())
        return {StreamOutcome::Stopped, nothingToHear()};
    return openAddress(url, 0, othersFollow);
}

/// The place in the file; empty if it cannot be found.
std::optional<StreamStart> StreamReader::findStart(const StreamFile &file)
{
    StreamStart start = *m_startAt;
    MediaLayout layout = mediaLayout(file.head, file.begin, file.size);
    const auto goOn = [this] { return !isOver(); };
    const auto complete = completeLayout(m_http, file.url, layout, goOn);
    const auto place = complete ? findPlace(m_http, file.url, layout, start.position, goOn)
                                : Result<MediaPlace, TrString>(failure(complete.error()));
    if (!place) {
        VESK_INFO("beginning at the beginning: " << place.error());
        return {};
    }
    start.url = file.url;
    start.offset = place->offset;
    start.time = place->time;
    start.head = layout.head;
    return start;
}

StreamOutcome StreamReader::playEntries(const QList<QUrl> &entries, int depth, bool othersFollow)
{
    StreamOutcome result {StreamOutcome::Refused,
        playerText(QT_TRANSLATE_NOOP("Player", "There is no stream in the playlist."))};
    bool played = false;
    bool failed = false;
    for (int i = 0; i < entries.size(); ++i) {
        const bool isLast = i + 1 == entries.size();
        const StreamOutcome outcome = playAddress(entries.at(i), depth, othersFollow || !isLast);
        if (outcome.kind == StreamOutcome::Ended) {
            played = true;
            continue;
        }
        if (!mayGoOn(outcome.kind) || !m_current.isEmpty() || isOver())
            return outcome;
        // Report a fault that may pass rather than one that will not: the source is retried for it.
        if (!failed || outcome.kind == StreamOutcome::Broken)
            result = outcome;
        failed = true;
        if (!isLast)
            tell(problemWithNextAddress(outcome));
    }
    // Of several files, those that are unavailable are skipped.
    if (played && (!failed || !m_source.live))
        return {StreamOutcome::Ended, {}};
    return result;
}

StreamOutcome StreamReader::playHls(const QUrl &url, const AudioReceiver &receiver)
{
    if (url != m_hlsUrl)
        m_hlsNext = -1;
    m_hlsUrl = url;
    HlsStream::Manner manner;
    manner.live = m_source.live;
    manner.patience = patience(true);
    manner.wait = [this](Milliseconds time) { return waitFor(time); };
    manner.pace = [this] { return pace(); };
    if (m_startAt)
        manner.start = std::exchange(m_startAt, std::nullopt)->position;
    return HlsStream(m_http, m_feed, manner).play(receiver.head().url, receiver.text(), m_hlsNext);
}

/// Plays the response; resumes a broken file download by range requests, for as long as that works.
StreamOutcome StreamReader::playAudio(
    const QUrl &url, AudioReceiver &receiver, HttpStreamResult result)
{
    StreamOutcome outcome = receiver.judge(result, m_source.live);
    const bool isFile = !m_source.live && receiver.content() == StreamContent::Audio
        && receiver.head().length > 0;
    // The address behind a redirect may be short-lived: when resuming there brings nothing, the
    // next request starts from the original address again.
    const QUrl found = receiver.head().url;
    bool viaFound = true;
    if (m_startAt && m_startAt->url == url && receiver.received() > m_startAt->offset)
        m_startAt.reset();
    while (isFile && mayGoOn(outcome.kind) && m_feed.isUsable() && m_consumer.wasHeard()) {
        if (!waitBeforeRetry(outcome))
            return {StreamOutcome::Stopped, outcome.problem};
        m_opened = Clock::now();
        m_feed.resume();
        const qint64 before = receiver.received();
        result = m_http.get({viaFound ? found : url, before}, receiver);
        outcome = receiver.judge(result, m_source.live);
        viaFound = receiver.received() > before || !viaFound;
        wasGood();
    }
    return outcome;
}

/// Waits until a stream that ended is decoded, except for a station that was good, which is
/// rejoined at once. A file without a single sample is refused; a station without one may not have
/// started yet and is retried.
StreamOutcome StreamReader::finish(StreamOutcome outcome)
{
    if (outcome.kind == StreamOutcome::Ended && !(m_source.live && m_feed.isGood())) {
        m_feed.finish();
        const bool wasSilent = !m_feed.isGood() && m_consumer.decoded() == Milliseconds::zero();
        if (wasSilent && !isOver())
            return {m_source.live ? StreamOutcome::Broken : StreamOutcome::Refused, notDecodable()};
    }
    // goOn() stopped a connection that delivered no audible sound: the play itself continues.
    if (outcome.kind == StreamOutcome::Stopped && !isOver())
        outcome.kind = StreamOutcome::Broken;
    return outcome;
}

/// The end of a station's stream is a break: reconnects to the same address.
StreamOutcome StreamReader::rejoin()
{
    m_finished.remove(m_lastFinished);
    m_current = m_lastFinished;
    return endedByServer();
}

bool StreamReader::isGivenUp(const StreamOutcome &outcome) const
{
    const bool isFinal
        = outcome.kind == StreamOutcome::Hopeless || outcome.kind == StreamOutcome::Refused;
    if (m_consumer.wasHeard())
        return outcome.kind == StreamOutcome::Hopeless && !m_source.live;
    return isFinal || m_source.hasAlternatives;
}

/// Whether the connection that ended brought a second of audio. Bytes are decoded after they were
/// received, so this waits while decoding makes progress.
bool StreamReader::wasGood()
{
    Milliseconds before = m_consumer.decoded();
    for (Milliseconds idle {0}; idle < DecoderStart; idle += StreamConsumer::MaxWait) {
        if (!m_feed.hasBrought() || !m_feed.isUsable() || m_feed.isGood() || isOver())
            break;
        waitFor(StreamConsumer::MaxWait);
        const Milliseconds decoded = m_consumer.decoded();
        if (decoded > before)
            idle = Milliseconds(0);
        before = decoded;
    }
    if (m_feed.isGood())
        recover();
    return m_feed.isGood();
}

void StreamReader::recover()
{
    m_backOff.reset();
    m_brokenSince.reset();
    m_round = 0;
    tell({});
}

/// Doubles with each round, so that a slow server is reached eventually.
StreamReader::Milliseconds StreamReader::patience(bool othersFollow) const
{
    constexpr int MostDoublings = 8;
    return othersFollow ? m_times.entry * (1 << qBound(0, m_round - 1, MostDoublings))
                        : Milliseconds(0);
}

bool StreamReader::pace()
{
    const Milliseconds wait = m_pace.next(Clock::now());
    return wait == Milliseconds::zero() || (waitFor(wait) && !isOver());
}

/// Waits before the next try. Returns false when the play is over: stopped, or silent for too long.
bool StreamReader::waitBeforeRetry(const StreamOutcome &outcome)
{
    if (isOver())
        return false;
    if (!m_brokenSince)
        m_brokenSince = Clock::now();
    Milliseconds wait = m_backOff.next(outcome.retryAfter);
    if (const auto end = deadline()) {
        // Leave the last try enough time before the deadline.
        const auto left = std::chrono::duration_cast<Milliseconds>(*end - Clock::now());
        if (left > m_times.lastTry)
            wait = std::min(wait, left - m_times.lastTry);
    }
    VESK_INFO(outcome.problem << " Trying again in " << wait.count() << " ms.");
    tell(problemWithRetry(outcome, wait));
    if (!waitFor(wait) || isOver())
        return false;
    tell(problemWithTry(outcome));
    return true;
}

bool StreamReader::waitFor(Milliseconds time)
{
    m_wait.wait(time, [this] {
        m_consumer.look();
        return isAsleep() || isTimeUp();
    });
    return !m_wait.isStopped() && !isAsleep();
}

bool StreamReader::goOn()
{
    m_consumer.look();
    if (m_feed.isGood())
        recover();
    // The output's silence may have begun before this connection.
    const auto silence = std::min<Clock::duration>(m_consumer.silence(), Clock::now() - m_opened);
    return !isAsleep() && !isOver() && m_feed.isUsable() && silence < m_times.silence;
}

/// Checks for a sleep since the last call, and remembers it. Only stations: a file continues where
/// it was.
bool StreamReader::isAsleep()
{
    m_slept = m_slept || (m_source.live && m_sleep.hasSlept());
    return m_slept;
}

void StreamReader::tell(const TrString &problem)
{
    if (problem == m_told)
        return;
    m_told = problem;
    Q_EMIT problemChanged(problem);
}

/// When to give up if there is no sound until then.
std::optional<StreamReader::Clock::time_point> StreamReader::deadline() const
{
    if (!m_consumer.wasHeard())
        return m_start + m_times.giveUp;
    // A paused output reports no silence: a file is not given up during a pause.
    if (!m_source.live && m_brokenSince && m_consumer.silence() > Milliseconds::zero())
        return *m_brokenSince + m_times.giveUpFile;
    return {};
}

bool StreamReader::isTimeUp() const
{
    const auto end = deadline();
    return end && Clock::now() > *end;
}

bool StreamReader::isOver() const
{
    return m_wait.isStopped() || m_slept || isTimeUp();
}
