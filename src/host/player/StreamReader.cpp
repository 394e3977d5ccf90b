#include "host/player/StreamReader.h"

#include "api/core/log.h"
#include "api/core/vesk.h"
#include "host/player/HlsStream.h"
#include "host/player/Playlist.h"
#include "host/player/StreamConsumer.h"
#include "host/player/StreamReceivers.h"

#include <algorithm>

VESK_LOGGER("Player")

namespace {

/// A connection that brought this much was good: the next wait is short again.
constexpr std::chrono::milliseconds GoodAudio {1000};

} // namespace

StreamReader::StreamReader(const StreamSource &source, StreamConsumer &consumer, const Times &times)
    : m_source(source)
    , m_consumer(consumer)
    , m_times(times)
    , m_http(times.http)
{
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
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    m_http.interrupt();
}

void StreamReader::tryNow()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_tryNow = true;
    }
    m_changed.notify_all();
}

void StreamReader::run()
{
    veskSetThreadName(QStringLiteral("StreamReader"));
    m_start = Clock::now();
    for (;;) {
        const StreamOutcome outcome = playOnce();
        if (isStopped())
            return;
        if (outcome.kind == StreamOutcome::Ended) {
            Q_EMIT ended();
            return;
        }
        const bool isHopeless = outcome.kind == StreamOutcome::Hopeless && !m_consumer.wasHeard();
        const bool again = !isHopeless && waitBeforeRetry(outcome);
        if (isStopped())
            return;
        if (!again) {
            VESK_WARN("giving up: " << outcome.problem);
            Q_EMIT gaveUp(outcome.problem);
            return;
        }
    }
}

/// What was heard before comes first, then everything that the source leads to.
StreamOutcome StreamReader::playOnce()
{
    if (!m_current.isEmpty()) {
        const QUrl current = m_current;
        m_current.clear();
        const StreamOutcome outcome = playAddress(current, 0);
        if (outcome.kind != StreamOutcome::Broken || !m_current.isEmpty()
            || current == m_source.url)
            return outcome;
    }
    return playAddress(m_source.url, 0);
}

StreamOutcome StreamReader::playAddress(const QUrl &url, int depth)
{
    if (m_finished.contains(url))
        return {StreamOutcome::Ended, {}};
    VESK_DEBUG("opening " << url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery));
    m_opened = Clock::now();
    if (!m_consumer.isUsable())
        m_consumer.forgetAudio();
    AudioReceiver receiver(m_consumer, [this] { return goOn(); });
    HttpStreamResult result = m_http.get({url}, receiver);
    if (result.kind == HttpStreamResult::Complete || result.kind == HttpStreamResult::Closed)
        receiver.complete();

    if (isPlaylist(receiver.content())) {
        if (depth >= PlaylistLimits::MaxDepth) {
            return {StreamOutcome::Broken,
                playerText(QT_TRANSLATE_NOOP("Player", "The playlists never lead to a stream."))};
        }
        return playEntries(
            parsePlaylist(receiver.text(), receiver.content(), receiver.head().url), depth + 1);
    }
    if (receiver.content() == StreamContent::Hls) {
        HlsStream stream(
            m_http, m_consumer, [this](Milliseconds time) { return waitFor(time); },
            [this] { return goOn(); });
        const StreamOutcome outcome = stream.play(receiver.head().url, receiver.text());
        if (outcome.kind == StreamOutcome::Broken && m_consumer.decoded() >= GoodAudio) {
            m_current = url;
            m_backOff.reset();
        }
        return outcome;
    }
    const StreamOutcome outcome = playAudio(receiver, std::move(result));
    if (outcome.kind == StreamOutcome::Ended) {
        m_finished.insert(url);
    } else if (receiver.content() == StreamContent::Audio && m_consumer.decoded() >= GoodAudio) {
        m_current = url;
        m_backOff.reset();
    }
    return outcome;
}

StreamOutcome StreamReader::playEntries(const QList<QUrl> &entries, int depth)
{
    StreamOutcome last {StreamOutcome::Broken,
        playerText(QT_TRANSLATE_NOOP("Player", "There is no stream in the playlist."))};
    bool played = false;
    for (const QUrl &entry : entries) {
        last = playAddress(entry, depth);
        played |= last.kind == StreamOutcome::Ended;
        const bool next = last.kind == StreamOutcome::Ended
            || (last.kind == StreamOutcome::Broken && m_current.isEmpty());
        if (!next || !goOn())
            return last;
    }
    // Of several files the ones that cannot be had are left out.
    if (played && !m_source.live && last.kind == StreamOutcome::Broken)
        last.kind = StreamOutcome::Ended;
    return last;
}

/// Goes on with a file whose connection broke, from where it broke, as long as that works.
StreamOutcome StreamReader::playAudio(AudioReceiver &receiver, HttpStreamResult result)
{
    StreamOutcome outcome = judge(receiver, result);
    const auto isBrokenFile = [&] {
        return !m_source.live && outcome.kind == StreamOutcome::Broken
            && receiver.content() == StreamContent::Audio && receiver.head().length > 0
            && m_consumer.isUsable() && m_consumer.wasHeard();
    };
    const QUrl url = receiver.head().url;
    while (isBrokenFile()) {
        const qint64 before = receiver.received();
        if (!waitBeforeRetry(outcome))
            return {StreamOutcome::Stopped, outcome.problem};
        m_opened = Clock::now();
        result = m_http.get({url, before}, receiver);
        outcome = judge(receiver, result);
        if (receiver.received() > before)
            m_backOff.reset();
    }
    if (outcome.kind == StreamOutcome::Ended)
        m_consumer.finishAudio([this] { return goOn(); });
    return outcome;
}

StreamOutcome StreamReader::judge(
    const AudioReceiver &receiver, const HttpStreamResult &result) const
{
    StreamOutcome outcome;
    outcome.retryAfter = receiver.head().retryAfter;
    const bool isAudio = receiver.content() == StreamContent::Audio;
    // What has no length, and is not live, has ended however its connection did.
    const bool isWhole
        = receiver.head().length < 0 ? !m_source.live : result.kind == HttpStreamResult::Complete;
    if (isStopped()) {
        outcome.kind = StreamOutcome::Stopped;
    } else if (receiver.isHopeless()) {
        outcome.kind = StreamOutcome::Hopeless;
        outcome.problem = receiver.problem();
    } else if (!receiver.problem().isEmpty()) {
        outcome.problem = receiver.problem();
    } else if (result.kind == HttpStreamResult::Failed) {
        outcome.problem = result.problem;
    } else if (result.kind == HttpStreamResult::Refused) {
        outcome.problem
            = playerText(QT_TRANSLATE_NOOP("Player", "There is nothing to hear on the stream."));
    } else if (isAudio && isWhole) {
        outcome.kind = StreamOutcome::Ended;
    } else {
        outcome.problem = playerText(QT_TRANSLATE_NOOP("Player", "The stream's server ended it."));
    }
    return outcome;
}

/// Returns false when the play is over: stopped, or nothing heard for too long.
bool StreamReader::waitBeforeRetry(const StreamOutcome &outcome)
{
    Milliseconds wait = m_backOff.next(outcome.retryAfter);
    if (!m_consumer.wasHeard()) {
        // The last try is early enough to bring something.
        const auto left
            = std::chrono::duration_cast<Milliseconds>(m_start + m_times.giveUp - Clock::now());
        if (left > m_times.lastTry)
            wait = std::min(wait, left - m_times.lastTry);
    }
    VESK_INFO(outcome.problem << " Trying again in " << wait.count() << " ms.");
    return waitFor(wait) && !isTimeUp();
}

bool StreamReader::waitFor(Milliseconds time)
{
    const auto end = Clock::now() + time;
    std::unique_lock<std::mutex> lock(m_mutex);
    m_tryNow = false;
    while (!m_stop && !m_tryNow && Clock::now() < end) {
        auto until = end;
        if (!m_consumer.wasHeard())
            until = std::min(until, m_start + m_times.giveUp);
        m_changed.wait_until(lock, until);
        if (isTimeUp())
            break;
    }
    return !m_stop;
}

bool StreamReader::goOn() const
{
    const auto silence = std::min<Clock::duration>(m_consumer.silence(), Clock::now() - m_opened);
    return !isStopped() && !isTimeUp() && m_consumer.isUsable() && silence < m_times.silence;
}

bool StreamReader::isTimeUp() const
{
    return !m_consumer.wasHeard() && Clock::now() - m_start > m_times.giveUp;
}

bool StreamReader::isStopped() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_stop;
}
