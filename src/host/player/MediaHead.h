// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QUrl>

#include <cstddef>

/// An audio file on a server, as far as its beginning tells.
struct StreamFile {
    QUrl url;
    qint64 size = 0; ///< in bytes
    qint64 begin = 0; ///< where the ID3 tags end that it begins with
    QByteArray head; ///< from there on, up to MediaLayout::HeadSize bytes
};

/// Collects the beginning of a file as it passes by. Its ID3 tags, with pictures of any size, are
/// skipped.
class MediaHead {
public:
    void take(const char *data, std::size_t size);
    /// Whether more bytes would add nothing.
    bool isComplete() const;
    qint64 begin() const { return m_begin; }
    const QByteArray &bytes() const { return m_bytes; }

private:
    void skipTags();

    qint64 m_begin = 0;
    qint64 m_skip = 0; ///< bytes of a tag that are still to come
    QByteArray m_bytes;
};
