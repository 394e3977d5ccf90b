// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "host/player/IcyStream.h"

#include <QStringList>

#include <algorithm>

// A stream with ICY metadata: the same audio and titles are read whatever pieces the bytes arrive
// in.

namespace {

struct Heard {
    QByteArray audio;
    QStringList titles;
};

/// Feeds \a bytes in pieces, whose sizes cycle through \a sizes (0 is one byte); all at once when
/// it is empty.
Heard hear(int interval, const QByteArray &bytes, const QByteArray &sizes)
{
    Heard heard;
    IcyStream stream(interval);
    int at = 0;
    for (int piece = 0; at < bytes.size(); ++piece) {
        const int wanted = sizes.isEmpty()
            ? bytes.size()
            : 1 + static_cast<unsigned char>(sizes.at(piece % sizes.size()));
        const int size = std::min(wanted, bytes.size() - at);
        FUZZ_REQUIRE(stream.feed(
            bytes.constData() + at, static_cast<std::size_t>(size),
            [&heard](const char *data, std::size_t count) {
                FUZZ_REQUIRE(count > 0);
                heard.audio.append(data, static_cast<int>(count));
                return true;
            },
            [&heard](const QString &title) { heard.titles.append(title); }));
        at += size;
    }
    return heard;
}

/// The expected audio: \a bytes without the metadata blocks.
QByteArray audioOf(int interval, const QByteArray &bytes)
{
    QByteArray audio;
    int at = 0;
    while (at < bytes.size()) {
        audio += bytes.mid(at, interval);
        at += interval;
        if (at < bytes.size())
            at += 1 + 16 * static_cast<unsigned char>(bytes.at(at));
    }
    return audio;
}

void requireSound(const QStringList &titles)
{
    for (int i = 0; i < titles.size(); ++i) {
        FUZZ_REQUIRE(!titles.at(i).isNull() && titles.at(i).size() <= 512);
        FUZZ_REQUIRE(i == 0 || titles.at(i) != titles.at(i - 1));
        for (const QChar c : titles.at(i))
            FUZZ_REQUIRE(c.category() != QChar::Other_Control);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int Head = 4;
    if (size < Head)
        return 0;
    const QByteArray head(reinterpret_cast<const char *>(data), Head);
    const QByteArray bytes(
        reinterpret_cast<const char *>(data) + Head, static_cast<int>(size) - Head);
    const int interval = static_cast<unsigned char>(head.at(0));
    const Heard whole = hear(interval, bytes, {});
    FUZZ_REQUIRE(whole.audio == (interval == 0 ? bytes : audioOf(interval, bytes)));
    requireSound(whole.titles);
    for (const QByteArray &sizes : {head.mid(1), QByteArray(1, '\0')}) {
        const Heard pieces = hear(interval, bytes, sizes);
        FUZZ_REQUIRE(pieces.audio == whole.audio && pieces.titles == whole.titles);
    }
    const QString title = icyTitle(bytes);
    requireSound(title.isNull() ? QStringList() : QStringList {title});
    return 0;
}
