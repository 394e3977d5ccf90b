// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/HlsStream.h"

#include "host/player/PlayerText.h"
#include "host/player/Playlist.h"
#include "host/player/StreamFeed.h"
#include "host/player/StreamProblems.h"
#include "host/player/StreamReceivers.h"

#include <algorithm>
#include <utility>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// A missing segment is skipped; more than these in a row are a broken stream.
constexpr int MaxMissed = 3;
/// The same limit while there is another variant.
constexpr int MaxMissedOfMany = 1;
/// A live playlist without a new segment for this many target durations has stalled.
constexpr int MaxUnchanged = 4;
/// Variants to try before the reader backs off.
constexpr int MaxVariantsTried = 5;
/// Servers of one station may be out of step: one that is this many segments behind is waited for.
constexpr int MaxLag = 5;
/// After a reconnect the station continues where it was if that is at most so much behind the live
/// position.
constexpr Milliseconds LongestAgo {30000};

/// Passes a segment's bytes to the feed.
class SegmentReceiver : public HttpStreamReceiver {
public:
    explicit SegmentReceiver(StreamFeed &feed)
        : m_feed(feed)
    {
    }

    bool begin(const HttpStreamHead &head) override
    {
        m_head = head;
        return streamRefusal(head).kind == StreamOutcome::Ended;
    }
    bool take(const char *data, std::size_t size) override { return m_feed.take(data, size); }
    bool goOn() override { return m_feed.goOn(); }

    const HttpStreamHead &head() const { return m_head; }

private:
    StreamFeed &m_feed;
    HttpStreamHead m_head;
};

StreamOutcome broken(const char *text)
{
    return {StreamOutcome::Broken, playerText(text)};
}

StreamOutcome refused(const char *text)
{
    return {StreamOutcome::Refused, playerText(text)};
}

/// Duration of the segments of \a playlist from media sequence number \a number on.
Milliseconds durationFrom(const HlsPlaylist &playlist, qint64 number)
{
    Milliseconds sum {0};
    for (const HlsSegment &segment : playlist.segments)
        sum += segment.number >= number ? segment.duration : Milliseconds(0);
    return sum;
}

/// The duration of the segments of \a playlist before media sequence number \a number.
Milliseconds durationBefore(const HlsPlaylist &playlist, qint64 number)
{
    Milliseconds sum {0};
    for (const HlsSegment &segment : playlist.segments)
        sum += segment.number < number ? segment.duration : Milliseconds(0);
    return sum;
}

/// The outcome for a live playlist that has no new segments.
StreamOutcome nothingNew(const HlsPlaylist &playlist)
{
    return playlist.segments.isEmpty()
        ? broken(QT_TRANSLATE_NOOP("Player", "The stream's playlist is empty."))
        : endedByServer();
}

} // namespace

HlsStream::HlsStream(HttpStream &http, StreamFeed &feed, const Manner &manner)
    : m_http(http)
    , m_feed(feed)
    , m_manner(manner)
{
}

StreamOutcome HlsStream::play(const QUrl &url, const QByteArray &text, qint64 &next)
{
    m_next = next;
    HlsPlaylist playlist = parseHlsPlaylist(text, url);
    const StreamOutcome outcome = playlist.isMaster() ? playVariants(playlist.orderedVariants())
                                                      : playMedia(url, std::move(playlist));
    next = m_next;
    return outcome;
}

StreamOutcome HlsStream::playVariants(const QVector<HlsVariant> &variants)
{
    const int count = std::min<int>(variants.size(), MaxVariantsTried);
    StreamOutcome last;
    for (int i = 0; i < count; ++i) {
        m_othersFollow = i + 1 < count;
        if (i > 0 && !m_manner.pace())
            return {StreamOutcome::Stopped, last.problem};
        const QUrl url = variants.at(i).url;
        const auto media = fetchPlaylist(url);
        last = !media ? media.error() : media->isMaster() ? neverAStream() : playMedia(url, *media);
        if (last.kind != StreamOutcome::Broken && last.kind != StreamOutcome::Refused)
            return last;
        // Continue with the first segment that this variant failed to deliver.
        if (m_firstMissed >= 0)
            m_next = m_firstMissed;
        m_firstMissed = -1;
        m_missed = 0;
        m_begun = false;
    }
    return last;
}

StreamOutcome HlsStream::playMedia(const QUrl &url, HlsPlaylist playlist)
{
    Milliseconds unchanged {0};
    if (playlist.ended && !m_manner.live)
        m_feed.consumer().takeDuration(durationFrom(playlist, 0));
    for (;;) {
        if (playlist.encrypted)
            return refused(QT_TRANSLATE_NOOP("Player", "The stream is encrypted."));
        if (playlist.ended && playlist.segments.isEmpty())
            return refused(QT_TRANSLATE_NOOP("Player", "The stream's playlist is empty."));
        const qint64 before = m_next;
        const StreamOutcome outcome = playSegments(playlist);
        if (outcome.kind != StreamOutcome::Ended)
            return outcome;
        if (playlist.ended && m_manner.live)
            return nothingNew(playlist);
        if (playlist.ended) {
            m_feed.finish();
            return {StreamOutcome::Ended, {}};
        }
        // RFC 8216, 6.3.4: reload an unchanged playlist after half of the target duration.
        const Milliseconds target = std::max(playlist.targetDuration, Milliseconds(1000));
        unchanged = m_next == before ? unchanged + target / 2 : Milliseconds(0);
        if (unchanged > target * MaxUnchanged) {
            // The expected segments never came: the server restarted its numbering. Rejoin.
            if (!playlist.segments.isEmpty() && m_next > playlist.segments.last().number + 1)
                m_next = -1;
            return nothingNew(playlist);
        }
        if (!m_manner.wait(target / 2))
            return {StreamOutcome::Stopped, nothingNew(playlist).problem};
        auto fetched = fetchPlaylist(url);
        if (fetched)
            playlist = *std::move(fetched);
        else if (fetched.error().kind == StreamOutcome::Stopped)
            return {StreamOutcome::Stopped, nothingNew(playlist).problem};
        else if (isMissedTooOften())
            return fetched.error();
    }
}

/// Picks the segment to play next: at the start, and when the server's media sequence numbers were
/// restarted or left m_next behind.
void HlsStream::join(const HlsPlaylist &playlist)
{
    const qint64 first = playlist.segments.first().number;
    const qint64 last = playlist.segments.last().number;
    const qint64 start = playlist.segments.at(playlist.firstSegment()).number;
    const bool isElsewhere = m_next < first || m_next > last + 1 + MaxLag;
    const bool isLate
        = !m_joined && durationFrom(playlist, m_next) > durationFrom(playlist, start) + LongestAgo;
    if (isElsewhere || isLate)
        m_next = start;
    if (!m_joined && m_manner.start.count() > 0 && playlist.ended) {
        Milliseconds before {0};
        for (const HlsSegment &segment : playlist.segments) {
            if (before > m_manner.start)
                break;
            m_next = segment.number;
            m_skip = m_manner.start - before;
            before += segment.duration;
        }
    }
    m_joined = true;
}

/// Starts a decoder for the segments from \a segment on.
void HlsStream::begin(const HlsPlaylist &playlist, const HlsSegment &segment)
{
    std::optional<AudioPlace> place;
    if (playlist.ended && !m_manner.live) {
        const std::chrono::microseconds skip = std::exchange(m_skip, std::chrono::microseconds(0));
        place = AudioPlace {durationBefore(playlist, segment.number) + skip, skip};
    }
    m_feed.start(place);
    m_begun = true;
    m_map = segment.map;
}

StreamOutcome HlsStream::playSegments(const HlsPlaylist &playlist)
{
    if (playlist.segments.isEmpty())
        return {StreamOutcome::Ended, {}};
    join(playlist);
    for (const HlsSegment &segment : playlist.segments) {
        if (segment.number < m_next)
            continue;
        const StreamOutcome outcome = playSegment(playlist, segment);
        if (outcome.kind == StreamOutcome::Stopped)
            return outcome;
        if (outcome.kind == StreamOutcome::Ended) {
            m_missed = 0;
            m_firstMissed = -1;
        } else {
            m_firstMissed = m_firstMissed < 0 ? segment.number : m_firstMissed;
            if (isMissedTooOften())
                return outcome;
        }
        m_next = segment.number + 1;
    }
    return {StreamOutcome::Ended, {}};
}

StreamOutcome HlsStream::playSegment(const HlsPlaylist &playlist, const HlsSegment &segment)
{
    if (m_missed > 0 && !m_manner.pace())
        return {StreamOutcome::Stopped, {}};
    if (!m_begun || segment.discontinuity || segment.map != m_map) {
        begin(playlist, segment);
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
    SegmentReceiver receiver(m_feed);
    const HttpStreamResult result = m_http.get({url, 0, patience()}, receiver);
    return refusal(result, receiver.head());
}

Result<HlsPlaylist, StreamOutcome> HlsStream::fetchPlaylist(const QUrl &url)
{
    TextReceiver receiver(PlaylistLimits::MaxBytes, [this] { return m_feed.goOn(); });
    const HttpStreamResult result = m_http.get({url, 0, patience()}, receiver);
    // The receiver stops at the limit: parse the part within it.
    const bool isCut = result.kind == HttpStreamResult::Refused
        && receiver.text().size() >= PlaylistLimits::MaxBytes;
    const StreamOutcome outcome
        = isCut ? StreamOutcome {StreamOutcome::Ended, {}} : refusal(result, receiver.head());
    if (outcome.kind != StreamOutcome::Ended)
        return failure(outcome);
    if (sniffStream(receiver.text(), true) != StreamContent::Hls) {
        return failure(
            broken(QT_TRANSLATE_NOOP("Player", "There is no audio at the stream's address.")));
    }
    return parseHlsPlaylist(receiver.text(), receiver.head().url);
}

/// Why a response is unusable; Ended when it is usable.
StreamOutcome HlsStream::refusal(const HttpStreamResult &result, const HttpStreamHead &head)
{
    if (!m_feed.isUsable()) {
        m_feed.forget();
        m_begun = false;
        return {StreamOutcome::Broken, notDecodable()};
    }
    if (result.kind == HttpStreamResult::Failed) {
        return {result.isFinal ? StreamOutcome::Refused : StreamOutcome::Broken, result.problem};
    }
    const StreamOutcome answer = streamRefusal(head);
    const bool isRefusedHere
        = result.kind == HttpStreamResult::Refused && answer.kind == StreamOutcome::Ended;
    if (result.kind == HttpStreamResult::Interrupted || isRefusedHere || !m_feed.goOn()) {
        return {
            StreamOutcome::Stopped, result.problem.isEmpty() ? nothingToHear() : result.problem};
    }
    return answer;
}

bool HlsStream::isMissedTooOften()
{
    return ++m_missed > (m_othersFollow ? MaxMissedOfMany : MaxMissed);
}

Milliseconds HlsStream::patience() const
{
    return m_othersFollow ? m_manner.patience : Milliseconds(0);
}
