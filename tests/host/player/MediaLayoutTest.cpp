// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/MediaLayout.h"
#include "host/player/MediaHead.h"
#include "tests/host/player/Chirp.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <random>

namespace {

using Microseconds = std::chrono::microseconds;

constexpr int Seconds = 40;

struct Format {
    const char *name;
    const char *encoder;
    MediaLayout::Kind kind;
    double tolerance; ///< seconds, of the duration and of places
};

void PrintTo(const Format &format, std::ostream *out)
{
    *out << format.name;
}

const Format Formats[] = {
    {"Mp3", "lamemp3enc target=bitrate cbr=true bitrate=128", MediaLayout::Mpeg, 0.1},
    {"Mp3Info", "lamemp3enc target=bitrate cbr=true bitrate=96 ! xingmux", MediaLayout::Mpeg, 0.1},
    {"Mp3Vbr", "lamemp3enc target=quality quality=4 ! xingmux", MediaLayout::Mpeg, 0.3},
    {"Aac", "voaacenc bitrate=96000 ! audio/mpeg,stream-format=adts", MediaLayout::Adts, 0.5},
    {"Vorbis", "vorbisenc bitrate=96000 ! oggmux", MediaLayout::Ogg, 0.05},
    {"Opus", "opusenc bitrate=64000 ! oggmux", MediaLayout::Ogg, 0.05},
    {"Flac", "flacenc", MediaLayout::Flac, 0.01},
    {"FlacSeekTable", "flacenc seekpoints=10", MediaLayout::Flac, 0.01},
};

class MediaLayoutTest : public testing::TestWithParam<Format> {
protected:
    void SetUp() override
    {
        bytes = chirp::recorded(GetParam().encoder, Seconds);
        if (bytes.isEmpty())
            GTEST_SKIP() << "this machine cannot make it";
        MediaHead head;
        head.take(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        layout = mediaLayout(head.bytes(), head.begin(), bytes.size());
        if (layout.needsEnd())
            layout.takeEnd(bytes.right(MediaLayout::HeadSize));
    }
    /// The place that is found, and how many pieces that took.
    std::optional<MediaPlace> find(Microseconds time, int &pieces) const
    {
        MediaSearch search(layout, time);
        while (const auto piece = search.next()) {
            ++pieces;
            EXPECT_GE(piece->offset, layout.begin);
            EXPECT_GT(piece->length, 0);
            EXPECT_LE(piece->offset + piece->length, bytes.size());
            search.take(bytes.mid(int(piece->offset), int(piece->length)));
        }
        return search.place();
    }

    QByteArray bytes;
    MediaLayout layout;
};

TEST_P(MediaLayoutTest, TheBeginningAndTheEndSayHowLongItIs)
{
    EXPECT_EQ(layout.kind, GetParam().kind);
    EXPECT_NEAR(static_cast<double>(layout.duration.count()) / 1e6, Seconds, GetParam().tolerance);
}

/// What is decoded from there is measured in the sound.
TEST_P(MediaLayoutTest, APlaceIsFoundAndSoundsAsItShould)
{
    for (const double time : {0.0, 0.5, 3.0, 12.345, 25.0, 39.0}) {
        SCOPED_TRACE(time);
        int pieces = 0;
        const auto place = find(Microseconds(static_cast<qint64>(time * 1e6)), pieces);
        ASSERT_TRUE(place);
        const double found = static_cast<double>(place->time.count()) / 1e6;
        EXPECT_LE(found, time + GetParam().tolerance);
        EXPECT_GE(found, time - 2.5);
        EXPECT_LE(pieces, 8);
        const QByteArray rest = layout.head + bytes.mid(int(place->offset));
        const ear::Sound sound = ear::decoded(rest.toStdString());
        ASSERT_EQ(sound.error, "");
        // Where it is to be heard, behind what is dropped.
        const double skip = std::max(time - found, 0.0);
        const double expected = found + skip + 0.3;
        EXPECT_NEAR(chirp::placeAt(sound, skip + 0.1), expected, GetParam().tolerance + 0.03);
    }
}

TEST_P(MediaLayoutTest, NoDamageLeadsOutOfTheFile)
{
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        QByteArray damaged = bytes.left(MediaLayout::HeadSize);
        for (int count = 0; count < 30; ++count)
            damaged[int(random() % 600)] = static_cast<char>(random());
        MediaLayout wrong = mediaLayout(damaged, 0, bytes.size());
        if (wrong.needsEnd())
            wrong.takeEnd(bytes.right(MediaLayout::HeadSize));
        MediaSearch search(wrong, Microseconds(20000000));
        int pieces = 0;
        while (const auto piece = search.next()) {
            ASSERT_LE(++pieces, MediaSearch::MostPieces);
            ASSERT_GE(piece->offset, 0);
            ASSERT_GE(piece->length, 0);
            ASSERT_LE(piece->offset + piece->length, bytes.size());
            search.take(bytes.mid(int(piece->offset), int(piece->length)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, MediaLayoutTest, testing::ValuesIn(Formats),
    [](const auto &format) { return format.param.name; });

TEST(MediaLayout, NothingIsSaidOfWhatIsNoAudio)
{
    EXPECT_FALSE(mediaLayout("", 0, 0).isKnown());
    EXPECT_FALSE(mediaLayout("text of some length", 0, 1000).isKnown());
    EXPECT_FALSE(mediaLayout(QByteArray(70000, '\xFF'), 0, 1000000).isKnown());
    EXPECT_FALSE(mediaLayout("OggS", 0, 1000).isKnown());
    EXPECT_FALSE(mediaLayout("fLaC", 0, 1000).isKnown());
    MediaSearch search(MediaLayout(), Microseconds(1000));
    EXPECT_FALSE(search.next());
    EXPECT_FALSE(search.place());
}

QByteArray id3(int size)
{
    QByteArray tag("ID3\x04\0\0", 6);
    for (int shift = 21; shift >= 0; shift -= 7)
        tag += static_cast<char>(size >> shift & 0x7F);
    return tag + QByteArray(size, 'p');
}

TEST(MediaHead, TagsAreSkippedHoweverTheyArrive)
{
    const QByteArray audio(200000, 'a');
    const QByteArray file = id3(300000) + id3(20) + audio;
    for (const int step : {1, 7, 1000, 100000, 1000000}) {
        MediaHead head;
        for (int at = 0; at < file.size() && !head.isComplete(); at += step)
            head.take(file.constData() + at, std::size_t(std::min<int>(step, file.size() - at)));
        EXPECT_EQ(head.begin(), 300010 + 30) << step;
        EXPECT_EQ(head.bytes(), audio.left(MediaLayout::HeadSize)) << step;
    }
}

} // namespace
