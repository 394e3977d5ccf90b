#include "host/player/HlsStream.h"

#include "host/player/Playlist.h"
#include "host/player/StreamConsumer.h"
#include "host/player/StreamReceivers.h"

#include <algorithm>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// A segment that is not there costs a gap; this many in a row are a broken stream.
constexpr int MaxMissed = 3;
/// A playlist that stays as it is for this many of its segments' durations has broken off.
constexpr int MaxUnchanged = 4;

/// Hands a segment's bytes to the consumer.
class SegmentReceiver : public HttpStreamReceiver {
public:
    SegmentReceiver(StreamConsumer &consumer, const HlsStream::GoOn &goOn)
        : m_consumer(consumer)
        , m_goOn(goOn)
    {
    }

    bool begin(const HttpStreamHead &head) override
    {
        m_problem = streamProblem(head.code);
        m_retryAfter = head.retryAfter;
        return m_problem.isEmpty();
    }
    bool take(const char *data, std::size_t size) override
    {
        return m_consumer.feedAudio(data, size, m_goOn);
    }
    bool goOn() override { return m_goOn(); }

    StreamOutcome outcome(const HttpStreamResult &result) const
    {
        if (!m_problem.isEmpty())
            return {StreamOutcome::Broken, m_problem, m_retryAfter};
        switch (result.kind) {
        case HttpStreamResult::Complete:
        case HttpStreamResult::Closed:
            return {StreamOutcome::Ended, {}};
        case HttpStreamResult::Refused:
        case HttpStreamResult::Interrupted:
            return {StreamOutcome::Stopped,
                playerText(QT_TRANSLATE_NOOP("Player", "There is nothing to hear on the stream."))};
        case HttpStreamResult::Failed:
            break;
        }
        return {StreamOutcome::Broken, result.problem};
    }

private:
    StreamConsumer &m_consumer;
    const HlsStream::GoOn &m_goOn;
    TrString m_problem;
    Milliseconds m_retryAfter {0};
};

StreamOutcome broken(const char *text)
{
    return {StreamOutcome::Broken, playerText(text)};
}

} // namespace

HlsStream::HlsStream(HttpStream &http, StreamConsumer &consumer, Wait wait, GoOn goOn)
    : m_http(http)
    , m_consumer(consumer)
    , m_wait(std::move(wait))
    , m_goOn(std::move(goOn))
{
}

StreamOutcome HlsStream::play(const QUrl &url, const QByteArray &text)
{
    HlsPlaylist playlist = parseHlsPlaylist(text, url);
    if (!playlist.isMaster())
        return playMedia(url, std::move(playlist));
    const QUrl variant = playlist.bestVariant().url;
    HlsPlaylist media;
    const StreamOutcome outcome = fetchPlaylist(variant, media);
    if (outcome.kind != StreamOutcome::Ended)
        return outcome;
    if (media.isMaster())
        return broken(QT_TRANSLATE_NOOP("Player", "The playlists never lead to a stream."));
    return playMedia(variant, std::move(media));
}

StreamOutcome HlsStream::playMedia(const QUrl &url, HlsPlaylist playlist)
{
    Milliseconds unchanged {0};
    for (;;) {
        if (playlist.encrypted)
            return broken(QT_TRANSLATE_NOOP("Player", "The stream is encrypted."));
        const qint64 before = m_next;
        const StreamOutcome outcome = playSegments(playlist);
        if (outcome.kind != StreamOutcome::Ended)
            return outcome;
        if (playlist.ended) {
            m_consumer.finishAudio(m_goOn);
            return {StreamOutcome::Ended, {}};
        }
        // RFC 8216, 6.3.4: half of the target duration when nothing was new.
        const Milliseconds target = std::max(playlist.targetDuration, Milliseconds(1000));
        unchanged = m_next == before ? unchanged + target / 2 : Milliseconds(0);
        if (unchanged > target * MaxUnchanged)
            return broken(QT_TRANSLATE_NOOP("Player", "The stream's server ended it."));
        if (!m_wait(target / 2))
            return {StreamOutcome::Stopped, {}};
        const StreamOutcome fetched = fetchPlaylist(url, playlist);
        if (fetched.kind == StreamOutcome::Stopped)
            return fetched;
        if (fetched.kind == StreamOutcome::Broken && ++m_missed > MaxMissed)
            return fetched;
    }
}

StreamOutcome HlsStream::playSegments(const HlsPlaylist &playlist)
{
    if (playlist.segments.isEmpty())
        return {StreamOutcome::Ended, {}};
    const qint64 first = playlist.segments.first().number;
    const qint64 last = playlist.segments.last().number;
    // At the start, and when the server's numbers began anew or ran away.
    if (m_next < 0 || m_next > last + 1 || m_next < first)
        m_next = playlist.segments.at(playlist.firstSegment()).number;
    for (const HlsSegment &segment : playlist.segments) {
        if (segment.number < m_next)
            continue;
        const StreamOutcome outcome = playSegment(segment);
        if (outcome.kind == StreamOutcome::Stopped
            || (outcome.kind == StreamOutcome::Broken && ++m_missed > MaxMissed))
            return outcome;
        if (outcome.kind == StreamOutcome::Ended)
            m_missed = 0;
        m_next = segment.number + 1;
    }
    return {StreamOutcome::Ended, {}};
}

StreamOutcome HlsStream::playSegment(const HlsSegment &segment)
{
    if (!m_begun || segment.discontinuity || segment.map != m_map) {
        m_consumer.startAudio(m_goOn);
        m_begun = true;
        m_map = segment.map;
        if (!m_map.isEmpty()) {
            const StreamOutcome outcome = fetchAudio(m_map);
            if (outcome.kind != StreamOutcome::Ended)
                return outcome;
        }
    }
    return fetchAudio(segment.url);
}

StreamOutcome HlsStream::fetchAudio(const QUrl &url)
{
    SegmentReceiver receiver(m_consumer, m_goOn);
    return receiver.outcome(m_http.get({url}, receiver));
}

/// Leaves \a playlist as it is unless there is a new one.
StreamOutcome HlsStream::fetchPlaylist(const QUrl &url, HlsPlaylist &playlist)
{
    TextReceiver receiver(PlaylistLimits::MaxBytes, m_goOn);
    const HttpStreamResult result = m_http.get({url}, receiver);
    if (!m_goOn())
        return {StreamOutcome::Stopped, {}};
    if (result.kind == HttpStreamResult::Failed)
        return {StreamOutcome::Broken, result.problem};
    const TrString problem = streamProblem(receiver.head().code);
    if (!problem.isEmpty())
        return {StreamOutcome::Broken, problem, receiver.head().retryAfter};
    if (sniffStream(receiver.text(), true) != StreamContent::Hls)
        return broken(QT_TRANSLATE_NOOP("Player", "There is no audio at the stream's address."));
    playlist = parseHlsPlaylist(receiver.text(), receiver.head().url);
    return {StreamOutcome::Ended, {}};
}
