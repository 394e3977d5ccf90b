// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <functional>

/// Takes the titles out of a stream that a SHOUTcast or Icecast server interleaves with them: after
/// every `icy-metaint` bytes of audio comes one byte with a sixteenth of the metadata's length,
/// then the metadata. Bytes to bytes, no sockets; one thread.
class IcyStream {
public:
    using TakeAudio = std::function<bool(const char *data, std::size_t size)>;
    using TakeTitle = std::function<void(const QString &title)>;

    /// An interval of 0 or less: the stream has no metadata and all of it is audio.
    explicit IcyStream(int interval)
        : m_interval(interval)
    {
    }

    /// Hands on the audio in \a data, and a title when one is complete and another than before.
    /// Stops and returns false when \a takeAudio does.
    bool feed(
        const char *data, std::size_t size, const TakeAudio &takeAudio, const TakeTitle &takeTitle);

private:
    void finishMetadata(const TakeTitle &takeTitle);

    const int m_interval;
    std::size_t m_audioBefore = 0; ///< audio since the last metadata
    int m_missing = -1; ///< metadata bytes to come; -1 while audio does
    QByteArray m_metadata; ///< at most 4080 bytes
    QString m_title;
    bool m_hadTitle = false;
};

/// The `StreamTitle` of a metadata block, as UTF-8 or, when it is none, as Latin-1; without control
/// characters. Null when the block has no title.
QString icyTitle(const QByteArray &metadata);
