// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/MediaLayout.h"

#include "host/player/AudioFrames.h"
#include "host/player/FlacFrames.h"
#include "host/player/OggPages.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

using Microseconds = std::chrono::microseconds;

/// Longer than any file; keeps sums from overflowing.
constexpr double LongestSeconds = 400.0 * 24 * 3600;
/// An end of the search so close before the time is close enough: decoding the rest is quick.
constexpr Microseconds Close {1500000};
/// Frames that a decoder needs to hear before it is right: of MP3, whose frames refer to the bytes
/// of earlier ones, and of AAC, whose frames overlap.
constexpr int MpegPreroll = 10;
constexpr int AdtsPreroll = 2;
constexpr Microseconds OpusPreroll {80000}; // RFC 7845, 4.6

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

Microseconds micro(double seconds)
{
    return Microseconds(static_cast<qint64>(std::clamp(seconds, 0.0, LongestSeconds) * 1e6));
}

Microseconds samplesToTime(double samples, int rate)
{
    return micro(samples / rate);
}

void setEvenIndex(MediaLayout &layout, qint64 end)
{
    layout.index = {{layout.begin, Microseconds(0)}, {end, layout.duration}};
}

/// From "Xing" or "VBRI". The frame \a at which it stands is no audio.
bool useMp3Index(MediaLayout &layout, const Mp3Index &index, qint64 at, const AudioFrame &frame)
{
    if (index.frames == 0)
        return false;
    layout.begin = at + static_cast<qint64>(frame.size);
    layout.duration = samplesToTime(static_cast<double>(index.frames) * frame.samples, frame.rate);
    const qint64 end
        = index.bytes > 0 ? std::min(layout.size, at + qint64(index.bytes)) : layout.size;
    if (layout.duration.count() == 0 || end <= layout.begin)
        return false;
    layout.isConstant = index.isConstant;
    setEvenIndex(layout, end);
    if (index.isConstant || index.parts.empty())
        return true;
    std::vector<MediaPlace> places {layout.index.front()};
    for (std::size_t i = 1; i < index.parts.size(); ++i) {
        const MediaPlace place {at + static_cast<qint64>(index.parts[i]),
            layout.duration * static_cast<int>(i) / static_cast<int>(index.parts.size())};
        if (place.offset > places.back().offset && place.offset < end
            && place.time > places.back().time)
            places.push_back(place);
    }
    places.push_back(layout.index.back());
    layout.index = std::move(places);
    return true;
}

MediaLayout framesLayout(
    std::string_view bytes, qint64 begin, qint64 size, MediaLayout::Kind kind, ReadFrame read)
{
    MediaLayout layout;
    const std::optional<FoundFrame> found = findFrame(bytes, read);
    if (!found)
        return layout;
    const std::string_view audio = bytes.substr(found->at);
    const std::vector<AudioFrame> frames = framesIn(audio, read);
    layout.kind = kind;
    layout.begin = begin + static_cast<qint64>(found->at);
    layout.size = size;
    layout.rate = found->frame.rate;
    layout.frameSamples = found->frame.samples;
    if (kind == MediaLayout::Mpeg) {
        const auto index = readMp3Index(audio.substr(0, found->frame.size), found->frame);
        if (index && useMp3Index(layout, *index, layout.begin, found->frame))
            return layout;
        layout.isConstant = std::all_of(frames.begin(), frames.end(),
            [&](const AudioFrame &frame) { return frame.bitRate == found->frame.bitRate; });
    }
    double bytesSeen = 0;
    double samplesSeen = 0;
    for (const AudioFrame &frame : frames) {
        bytesSeen += static_cast<double>(frame.size);
        samplesSeen += frame.samples;
    }
    const double perSecond
        = layout.isConstant ? found->frame.bitRate / 8.0 : bytesSeen / samplesSeen * layout.rate;
    layout.duration = micro(static_cast<double>(size - layout.begin) / perSecond);
    setEvenIndex(layout, size);
    return layout.duration.count() > 0 ? layout : MediaLayout();
}

/// The header pages end where their packets do (RFC 3533, 4 and the mappings).
MediaLayout oggLayout(std::string_view bytes, qint64 begin, qint64 size)
{
    MediaLayout layout;
    std::size_t at = 0;
    std::size_t packets = 0;
    std::optional<OggAudio> audio;
    while (const std::optional<OggPage> page = readOggPage(bytes.substr(at))) {
        if (!audio && page->isFirst) {
            audio
                = readOggAudio(bytes.substr(at + page->headerSize, page->size - page->headerSize));
            layout.serial = page->serial;
        }
        const bool isOurs = audio && page->serial == layout.serial;
        if (isOurs && packets >= audio->headers) {
            // Recordings of a station do not begin at zero.
            const bool isLate = page->granule > 10LL * audio->rate;
            layout.firstGranule = isLate ? page->granule : audio->preSkip;
            break;
        }
        packets += isOurs ? page->packets : 0;
        at += page->size;
    }
    if (!audio || packets < audio->headers)
        return {};
    layout.kind = MediaLayout::Ogg;
    layout.begin = begin + static_cast<qint64>(at);
    layout.size = size;
    layout.head = QByteArray(bytes.data(), static_cast<int>(at));
    layout.rate = audio->rate;
    layout.lost = audio->lost;
    return layout;
}

MediaLayout flacLayout(std::string_view bytes, qint64 begin, qint64 size)
{
    const std::optional<FlacHeader> header = readFlacHeader(bytes);
    MediaLayout layout;
    if (!header || header->samples == 0 || header->size >= static_cast<std::uint64_t>(size - begin))
        return layout;
    layout.kind = MediaLayout::Flac;
    layout.begin = begin + static_cast<qint64>(header->size);
    layout.size = size;
    layout.rate = header->rate;
    layout.frameSamples = header->blockSize;
    layout.duration = samplesToTime(static_cast<double>(header->samples), header->rate);
    layout.head = QByteArray::fromStdString(header->beginning);
    for (const FlacSeekPoint &point : header->points) {
        const MediaPlace place {layout.begin + static_cast<qint64>(point.offset),
            samplesToTime(static_cast<double>(point.sample), header->rate)};
        if (place.offset < size && place.time < layout.duration)
            layout.index.push_back(place);
    }
    return layout.duration.count() > 0 ? layout : MediaLayout();
}

} // namespace

MediaLayout mediaLayout(const QByteArray &bytes, qint64 begin, qint64 size)
{
    const std::string_view view = viewOf(bytes);
    if (size <= begin || begin < 0)
        return {};
    if (view.substr(0, 4) == "OggS")
        return oggLayout(view, begin, size);
    if (view.substr(0, 4) == "fLaC")
        return flacLayout(view, begin, size);
    // MP3 first: its header differs from that of ADTS in the layer, which ADTS has as zero.
    for (const auto &[kind, read] : {std::pair(MediaLayout::Mpeg, &readMpegFrame),
             std::pair(MediaLayout::Adts, &readAdtsFrame)}) {
        const MediaLayout layout = framesLayout(view, begin, size, kind, read);
        if (layout.isKnown())
            return layout;
    }
    return {};
}

void MediaLayout::takeEnd(const QByteArray &bytes)
{
    qint64 last = -1;
    for (auto page = findOggPage(viewOf(bytes), 0); page;
         page = findOggPage(viewOf(bytes), page->at + page->page.size)) {
        if (page->page.serial == serial && page->page.granule >= 0)
            last = page->page.granule;
    }
    if (last > firstGranule)
        duration = samplesToTime(static_cast<double>(last - firstGranule), rate);
}

Microseconds MediaLayout::preroll() const
{
    switch (kind) {
    case Mpeg:
        return samplesToTime(MpegPreroll * frameSamples, rate);
    case Adts:
        return samplesToTime(AdtsPreroll * frameSamples, rate);
    case Ogg:
        return lost > 0 ? samplesToTime(2 * lost, rate) : OpusPreroll;
    case Flac:
    case Unknown:
        break;
    }
    return Microseconds(0);
}

qint64 MediaLayout::offsetOf(Microseconds time) const
{
    MediaPlace low {begin, Microseconds(0)};
    MediaPlace high {size, duration};
    for (const MediaPlace &place : index) {
        if (place.time <= time)
            low = place;
        else if (place.time < high.time || high.time <= low.time) {
            high = place;
            break;
        }
    }
    if (high.time <= low.time || high.offset <= low.offset)
        return low.offset;
    const double part = static_cast<double>((time - low.time).count())
        / static_cast<double>((high.time - low.time).count());
    return low.offset
        + static_cast<qint64>(
            std::clamp(part, 0.0, 1.0) * static_cast<double>(high.offset - low.offset));
}

Microseconds MediaLayout::timeOf(qint64 offset) const
{
    if (index.size() < 2)
        return Microseconds(0);
    std::size_t i = 1;
    while (i + 1 < index.size() && index[i].offset <= offset)
        ++i;
    const MediaPlace &low = index[i - 1];
    const MediaPlace &high = index[i];
    const double part = static_cast<double>(offset - low.offset)
        / static_cast<double>(std::max<qint64>(high.offset - low.offset, 1));
    const Microseconds time = low.time
        + Microseconds(static_cast<qint64>(
            std::clamp(part, 0.0, 1.0) * static_cast<double>((high.time - low.time).count())));
    if (!isConstant || frameSamples <= 0)
        return time;
    const double frame = static_cast<double>(frameSamples) / rate * 1e6;
    return micro(std::round(static_cast<double>(time.count()) / frame) * frame / 1e6);
}

std::vector<MediaPlace> MediaLayout::placesIn(const QByteArray &bytes, qint64 offset) const
{
    const std::string_view view = viewOf(bytes);
    std::vector<MediaPlace> places;
    if (kind == Flac) {
        for (const FoundFlacFrame &frame : flacFramesIn(view, frameSamples))
            places.push_back({offset + static_cast<qint64>(frame.at),
                samplesToTime(static_cast<double>(frame.sample), rate)});
    } else if (kind == Ogg) {
        for (auto page = findOggPage(view, 0); page;) {
            const std::size_t after = page->at + page->page.size;
            const auto next = findOggPage(view, after);
            // A page that begins in the middle of a packet would lose that one.
            const bool isClean = !next || next->at != after || !next->page.isContinued;
            if (page->page.serial == serial && page->page.granule >= firstGranule && isClean)
                places.push_back({offset + static_cast<qint64>(after),
                    samplesToTime(
                        static_cast<double>(page->page.granule - firstGranule + lost), rate)});
            page = next;
        }
    } else if (kind != Unknown) {
        if (const auto frame = findFrame(view, kind == Mpeg ? &readMpegFrame : &readAdtsFrame)) {
            const qint64 at = offset + static_cast<qint64>(frame->at);
            places.push_back({at, timeOf(at)});
        }
    }
    // Damaged or hostile files: only what is in order.
    std::vector<MediaPlace> ordered;
    for (const MediaPlace &place : places) {
        if (place.offset <= size && (ordered.empty() || place.time > ordered.back().time))
            ordered.push_back(place);
    }
    return ordered;
}

MediaSearch::MediaSearch(const MediaLayout &layout, Microseconds time)
    : m_layout(layout)
    , m_time(std::max(std::min(time, layout.duration) - layout.preroll(), Microseconds(0)))
    , m_low {layout.begin, Microseconds(0)}
    , m_high {layout.size, layout.duration}
{
    const bool isTimed = layout.kind == MediaLayout::Ogg || layout.kind == MediaLayout::Flac;
    if (isTimed) {
        for (const MediaPlace &place : layout.index) {
            if (place.time <= m_time && place.offset >= m_low.offset)
                m_low = place;
            else if (place.time > m_time && place.offset > m_low.offset) {
                m_high = place;
                break;
            }
        }
    }
    if (!layout.isKnown())
        return;
    if (m_time.count() == 0 || (isTimed && m_time - m_low.time <= Close && m_low.time.count() == 0))
        m_place = MediaPlace {layout.begin, Microseconds(0)};
    else
        ask();
}

/// Asks for the piece in which the time is presumed.
void MediaSearch::ask()
{
    m_next.reset();
    if (m_asked++ >= MostPieces)
        return;
    if (m_layout.kind == MediaLayout::Mpeg || m_layout.kind == MediaLayout::Adts) {
        const qint64 offset = m_layout.offsetOf(m_time);
        m_next = Piece {offset, std::min(PieceSize, m_layout.size - offset)};
        return;
    }
    const qint64 room = m_high.offset - m_low.offset;
    if (room <= PieceSize) {
        m_next = Piece {m_low.offset, std::min(PieceSize, m_layout.size - m_low.offset)};
        return;
    }
    const double part = m_high.time > m_low.time
        ? static_cast<double>((m_time - m_low.time).count())
            / static_cast<double>((m_high.time - m_low.time).count())
        : 0.5;
    // By interpolation; in the middle when that does not get closer.
    const bool isSlow = m_asked % 3 == 0;
    const auto guess = static_cast<qint64>((isSlow ? 0.5 : part) * static_cast<double>(room));
    const qint64 offset
        = m_low.offset + std::clamp<qint64>(guess - PieceSize / 2, 0, room - PieceSize / 2);
    m_next = Piece {offset, std::min(PieceSize, m_layout.size - offset)};
}

void MediaSearch::take(const QByteArray &bytes)
{
    if (!m_next)
        return;
    const std::vector<MediaPlace> places
        = m_layout.placesIn(bytes.left(static_cast<int>(m_next->length)), m_next->offset);
    if (m_layout.kind == MediaLayout::Mpeg || m_layout.kind == MediaLayout::Adts)
        takeEstimated(places);
    else
        takeTimed(places);
}

void MediaSearch::takeEstimated(const std::vector<MediaPlace> &places)
{
    m_next.reset();
    if (!places.empty())
        m_place = places.front();
}

void MediaSearch::takeTimed(const std::vector<MediaPlace> &places)
{
    const Piece piece = *m_next;
    const bool isAll = piece.offset <= m_low.offset && m_high.offset - m_low.offset <= PieceSize;
    const auto after = std::find_if(places.begin(), places.end(),
        [this](const MediaPlace &place) { return place.time > m_time; });
    if (after != places.begin() && std::prev(after)->offset >= m_low.offset
        && std::prev(after)->time >= m_low.time)
        m_low = *std::prev(after);
    const bool isFound = after != places.begin() && (after != places.end() || isAll);
    if (isFound || isAll || (m_low.offset > m_layout.begin && m_time - m_low.time <= Close)) {
        m_next.reset();
        m_place = m_low;
        return;
    }
    if (after != places.end() && after->offset < m_high.offset)
        m_high = *after;
    else if (places.empty())
        // Nothing begins here: it begins before.
        m_high.offset = std::max(m_low.offset, std::min(m_high.offset, piece.offset));
    ask();
}
