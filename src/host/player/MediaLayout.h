// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

/// A place in a file from which it can be decoded.
struct MediaPlace {
    qint64 offset = 0; ///< in bytes
    std::chrono::microseconds time {0}; ///< of the first sample that is decoded from there
};

/// What the beginning of an audio file says of the whole: how long it is, and how times and bytes
/// belong together. Made from untrusted bytes, by pure functions; any thread.
///
/// MP3 and AAC (ADTS) have no times in their frames. With a constant bit rate they are counted;
/// with a varying one they follow from the index in an MP3 file's first frame (to half a 256th of
/// the file, as precise as that is), else from the average of the beginning. Ogg and FLAC are
/// exact.
struct MediaLayout {
    enum Kind { Unknown, Mpeg, Adts, Ogg, Flac };
    /// How many bytes from the beginning of the audio on mediaLayout() needs at most.
    static constexpr int HeadSize = 64 * 1024;

    Kind kind = Unknown;
    qint64 begin = 0; ///< offset of the first audio
    qint64 size = 0; ///< of the file, in bytes
    std::chrono::microseconds duration {0}; ///< zero: unknown
    QByteArray head; ///< what a decoder needs before bytes from the middle
    /// Ascending, at least two, where the frames have no times: linear in between.
    std::vector<MediaPlace> index;
    int rate = 0; ///< samples per second; in Ogg, granules per second
    int frameSamples = 0; ///< of a frame of MP3, AAC or FLAC; 0 in FLAC if it varies
    bool isConstant = false; ///< MP3 with a constant bit rate: frames can be counted
    std::uint32_t serial = 0; ///< of the logical stream in Ogg
    qint64 firstGranule = 0; ///< granules before the beginning
    int lost = 0; ///< granules that a decoder which starts in the middle of Ogg swallows

    bool isKnown() const { return kind != Unknown; }
    /// The duration stands at the end of the file: see takeEnd().
    bool needsEnd() const { return kind == Ogg && duration.count() == 0; }
    /// Learns the duration from the last bytes of the file.
    void takeEnd(const QByteArray &bytes);
    /// How long before a time decoding must begin, so that the sound is right at that time.
    std::chrono::microseconds preroll() const;
    /// Where about a time is.
    qint64 offsetOf(std::chrono::microseconds time) const;
    /// The time of an offset; only with an index.
    std::chrono::microseconds timeOf(qint64 offset) const;
    /// The places in \a bytes, which begin at \a offset in the file. Ascending.
    std::vector<MediaPlace> placesIn(const QByteArray &bytes, qint64 offset) const;
};

/// The layout of a file of \a size bytes from its \a bytes from \a begin on, where an ID3 tag that
/// it begins with ends. Unknown if nothing can be said.
MediaLayout mediaLayout(const QByteArray &bytes, qint64 begin, qint64 size);

/// Finds the place for a time: tells which pieces of the file to fetch, one after the other, until
/// the place is known. A value without I/O.
class MediaSearch {
public:
    struct Piece {
        qint64 offset = 0;
        qint64 length = 0;
    };
    static constexpr qint64 PieceSize = 64 * 1024;
    static constexpr int MostPieces = 24;

    MediaSearch(const MediaLayout &layout, std::chrono::microseconds time);

    /// The piece to fetch and take(); none once the search is over.
    std::optional<Piece> next() const { return m_next; }
    /// The bytes of the last piece.
    void take(const QByteArray &bytes);
    /// The place, at or before the time; none if there is none.
    std::optional<MediaPlace> place() const { return m_place; }

private:
    void takeEstimated(const std::vector<MediaPlace> &places);
    void takeTimed(const std::vector<MediaPlace> &places);
    void ask();

    MediaLayout m_layout;
    std::chrono::microseconds m_time;
    MediaPlace m_low; ///< the last place known to be before the time
    MediaPlace m_high; ///< where the time is passed
    int m_asked = 0;
    std::optional<Piece> m_next;
    std::optional<MediaPlace> m_place;
};
