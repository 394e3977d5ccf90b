// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/BrokenMedia.h"

#include "tests/host/player/Recording.h"

#include <algorithm>

namespace {

constexpr int AdtsHead = 7;

int pick(std::mt19937 &random, int below)
{
    return static_cast<int>(random() % static_cast<unsigned>(std::max(1, below)));
}

/// The length of the ADTS frame that begins at \a at; 0 where none does.
int adtsLength(const QByteArray &stream, int at)
{
    const auto byte
        = [&](int offset) { return static_cast<unsigned char>(stream.at(at + offset)); };
    if (at + AdtsHead > stream.size() || byte(0) != 0xff || (byte(1) & 0xf0) != 0xf0)
        return 0;
    return (byte(3) & 3) << 11 | byte(4) << 3 | byte(5) >> 5;
}

void flipBits(QByteArray &stream, std::mt19937 &random)
{
    for (int count = 1 + pick(random, 200); count > 0; --count) {
        const int at = pick(random, stream.size());
        stream[at] = static_cast<char>(stream.at(at) ^ (1 << pick(random, 8)));
    }
}

void changePiece(QByteArray &stream, std::mt19937 &random)
{
    const int at = pick(random, stream.size());
    const int size = pick(random, std::min<int>(4000, stream.size() - at));
    switch (pick(random, 5)) {
    case 0:
        std::fill(stream.begin() + at, stream.begin() + at + size, '\0');
        break;
    case 1:
        stream.remove(at, size);
        break;
    case 2:
        stream.insert(at, stream.mid(at, size));
        break;
    case 3:
        for (int i = at; i < at + size; ++i)
            stream[i] = static_cast<char>(random());
        break;
    default: {
        const QByteArray &other = soundMedia().at(pick(random, soundMedia().size()));
        stream.insert(at, other.mid(pick(random, other.size()), 20000));
        break;
    }
    }
}

} // namespace

const QVector<QByteArray> &soundMedia()
{
    static const QVector<QByteArray> media = [] {
        QVector<QByteArray> made;
        for (const char *encoder :
            {"lamemp3enc", "voaacenc ! aacparse ! audio/mpeg,stream-format=adts",
                "voaacenc ! aacparse ! mp4mux fragment-duration=500 streamable=true",
                "voaacenc ! aacparse ! mpegtsmux", "vorbisenc ! oggmux",
                "audioresample ! opusenc ! oggmux", "flacenc"})
            made.append(recordedTone(encoder, 440, 2));
        return made;
    }();
    return media;
}

QByteArray scrambledAac(std::mt19937 &random, bool zeros)
{
    QByteArray stream = soundMedia().at(1);
    for (int at = 0, length = 0; (length = adtsLength(stream, at)) > AdtsHead; at += length) {
        for (int i = at + AdtsHead; i < std::min<int>(at + length, stream.size()); ++i)
            stream[i] = zeros ? '\0' : static_cast<char>(random());
    }
    return stream;
}

QByteArray brokenMedia(std::mt19937 &random)
{
    const int kind = pick(random, soundMedia().size() + 2);
    if (kind >= soundMedia().size())
        return scrambledAac(random, kind == soundMedia().size());
    QByteArray stream = soundMedia().at(kind);
    if (pick(random, 2) == 0)
        flipBits(stream, random);
    for (int count = pick(random, 4); count > 0; --count)
        changePiece(stream, random);
    if (pick(random, 4) == 0)
        stream.truncate(pick(random, stream.size()));
    return stream;
}
