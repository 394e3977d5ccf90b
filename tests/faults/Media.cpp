// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Media.h"

#include "tests/host/player/Recording.h"

#include <algorithm>
#include <functional>
#include <random>
#include <stdexcept>

namespace media {

namespace {

constexpr int AdtsHead = 7;
constexpr double FrameSamples = 1024;

Media tone(const char *encoder, int seconds, int rate)
{
    const Media media {recordedTone(encoder, 440, seconds, rate), double(seconds)};
    if (media.bytes.isEmpty())
        throw std::runtime_error(std::string("nothing here makes ") + encoder);
    return media;
}

/// Calls \a take with the offset and length of each ADTS frame.
void forEachFrame(const QByteArray &adts, const std::function<void(int at, int size)> &take)
{
    const auto byte = [&](int at) { return static_cast<unsigned char>(adts.at(at)); };
    for (int at = 0; at + AdtsHead <= adts.size();) {
        const int size = (byte(at + 3) & 3) << 11 | byte(at + 4) << 3 | byte(at + 5) >> 5;
        if (size < AdtsHead || at + size > adts.size())
            return;
        take(at, size);
        at += size;
    }
}

Media withPayload(const std::function<char()> &next)
{
    Media changed = aac();
    forEachFrame(aac().bytes, [&](int at, int size) {
        std::generate_n(changed.bytes.begin() + at + AdtsHead, size - AdtsHead, next);
    });
    return changed;
}

void appendLittle(QByteArray &bytes, quint32 value, int count)
{
    for (int i = 0; i < count; ++i)
        bytes.append(static_cast<char>(value >> 8 * i));
}

} // namespace

const Media &mp3()
{
    static const Media made = tone(
        "lamemp3enc target=bitrate cbr=true bitrate=128 encoding-engine-quality=fast", 10, 44100);
    return made;
}

const Media &mp3Mono()
{
    static const Media made
        = tone("audioconvert ! audio/x-raw,channels=1 ! "
               "lamemp3enc target=bitrate cbr=true bitrate=64 encoding-engine-quality=fast",
            10, 22050);
    return made;
}

const Media &aac()
{
    static const Media made
        = tone("voaacenc bitrate=96000 ! audio/mpeg,mpegversion=4,stream-format=adts", 20, 48000);
    return made;
}

const Media &aacHalfRate()
{
    static const Media made
        = tone("voaacenc bitrate=64000 ! audio/mpeg,mpegversion=4,stream-format=adts", 20, 24000);
    return made;
}

const Media &vorbis()
{
    static const Media made = tone("vorbisenc bitrate=96000 ! oggmux", 8, 44100);
    return made;
}

const Media &flac()
{
    static const Media made = tone("flacenc streamable-subset=true", 60, 44100);
    return made;
}

Media scrambledAac()
{
    std::mt19937 random(1);
    return withPayload([&random] { return static_cast<char>(random()); });
}

Media zeroedAac()
{
    return withPayload([] { return '\0'; });
}

Media oddProfileAac()
{
    Media changed = aac();
    // The two bits of the profile: 2 is "scalable sampling rate".
    forEachFrame(aac().bytes, [&](int at, int) {
        changed.bytes[at + 2] = static_cast<char>((changed.bytes.at(at + 2) & 0x3f) | 0x80);
    });
    return changed;
}

Media mutated(const Media &media, int every, int kept)
{
    Media changed = media;
    std::mt19937 random(2);
    for (int i = kept; i < changed.bytes.size(); ++i) {
        if (random() % static_cast<unsigned>(every) == 0)
            changed.bytes[i] = static_cast<char>(random());
    }
    return changed;
}

QList<QByteArray> segments(const Media &adts)
{
    const int framesPerSegment
        = static_cast<int>(2 * (adts.bytes == aac().bytes ? 48000 : 24000) / FrameSamples);
    QList<QByteArray> pieces;
    int frames = 0;
    forEachFrame(adts.bytes, [&](int at, int size) {
        if (frames++ % framesPerSegment == 0)
            pieces.append(QByteArray());
        pieces.last() += adts.bytes.mid(at, size);
    });
    // The last piece is shorter.
    pieces.removeLast();
    return pieces;
}

QByteArray garbage(int size)
{
    std::mt19937 random(3);
    QByteArray bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    return bytes;
}

QByteArray wavHead(int channels)
{
    constexpr quint32 Unknown = 0x7fffffff;
    const auto frame = static_cast<quint32>(channels) * 2;
    QByteArray head = "RIFF";
    appendLittle(head, Unknown, 4);
    head += "WAVEfmt ";
    appendLittle(head, 16, 4);
    appendLittle(head, 1, 2);
    appendLittle(head, static_cast<quint32>(channels), 2);
    appendLittle(head, 44100, 4);
    appendLittle(head, 44100 * frame, 4);
    appendLittle(head, frame, 2);
    appendLittle(head, 16, 2);
    head += "data";
    appendLittle(head, Unknown, 4);
    return head;
}

QByteArray hugeMatroskaHead()
{
    // An EBML header with the document's type, then a segment of unknown length with a Tracks
    // element of a gigabyte.
    return QByteArray::fromHex("1a45dfa3"
                               "8b"
                               "4282"
                               "88")
        + "matroska"
        + QByteArray::fromHex("18538067"
                              "01ffffffffffffff"
                              "1654ae6b"
                              "0840000000"
                              "ae"
                              "083fffffff0"
                              "0");
}

QByteArray hugeFlacHead()
{
    // "fLaC" with a valid STREAMINFO block, then a PICTURE block of the greatest possible length.
    return flac().bytes.left(4) + '\0' + flac().bytes.mid(5, 37) + QByteArray::fromHex("06ffffff");
}

QByteArray id3Head(int size)
{
    QByteArray head("ID3\x04\x00\x00", 6);
    for (int shift = 21; shift >= 0; shift -= 7)
        head.append(static_cast<char>(size >> shift & 0x7f));
    return head;
}

QByteArray midi()
{
    // Format 0, one track, 96 ticks a quarter note: notes of a second each, a thousand of them.
    QByteArray track;
    for (int i = 0; i < 1000; ++i)
        track += QByteArray::fromHex("00903c7f"
                                     "8140803c40");
    track += QByteArray::fromHex("00ff2f00");
    QByteArray bytes = QByteArray::fromHex("4d54686400000006000000010060") + "MTrk";
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(static_cast<char>(track.size() >> shift));
    return bytes + track;
}

QByteArray module()
{
    // Title, 31 samples of which the first has 2000 words, one pattern with a note, the sample.
    QByteArray bytes("tone");
    bytes = bytes.leftJustified(20, '\0');
    QByteArray sample("wave");
    sample = sample.leftJustified(22, '\0')
        + QByteArray::fromHex("07d000400000"
                              "07d0");
    bytes += sample + QByteArray(30 * 30, '\0');
    bytes += QByteArray::fromHex("017f") + QByteArray(128, '\0') + "M.K.";
    bytes += QByteArray::fromHex("00d61000") + QByteArray(1020, '\0');
    for (int i = 0; i < 4000; ++i)
        bytes.append(static_cast<char>(i % 32 < 16 ? 100 : -100));
    return bytes;
}

} // namespace media
