// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <functional>

/// Separates audio from the metadata that SHOUTcast and Icecast servers interleave: after every
/// `icy-metaint` bytes of audio comes one byte with the metadata's length divided by 16, then the
/// metadata. Does no I/O. Not thread-safe.
class IcyStream {
public:
    using TakeAudio = std::function<bool(const char *data, std::size_t size)>;
    using TakeTitle = std::function<void(const QString &title)>;

    /// \a interval is `icy-metaint`; with 0 or less the whole stream is audio.
    explicit IcyStream(int interval)
        : m_interval(interval)
    {
    }

    /// Passes the audio in \a data to \a takeAudio, and each complete title that differs from the
    /// previous one to \a takeTitle. Returns false as soon as \a takeAudio does.
    bool feed(
        const char *data, std::size_t size, const TakeAudio &takeAudio, const TakeTitle &takeTitle);

private:
    void finishMetadata(const TakeTitle &takeTitle);

    const int m_interval;
    std::size_t m_audioBefore = 0; ///< audio bytes since the last metadata block
    int m_missing = -1; ///< metadata bytes still to come; -1 while in audio
    QByteArray m_metadata; ///< at most 4080 bytes
    QString m_title;
    bool m_hadTitle = false;
};

/// The `StreamTitle` of a metadata block, decoded as UTF-8 or else as Latin-1 and made displayable
/// (see streamText()). Null if the block has no title.
QString icyTitle(const QByteArray &metadata);
