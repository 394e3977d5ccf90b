// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/mpris/MprisProperties.h"

#include "host/mpris/Mpris.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

/// As GVariant prints it.
std::string propertyOf(const MprisState &state, const char *name)
{
    for (const auto &property : mprisProperties(state)) {
        if (property.first != name)
            continue;
        g_autofree char *printed = g_variant_print(property.second.get(), FALSE);
        return printed;
    }
    return "none";
}

std::string metadataOf(const MprisTrack &track)
{
    MprisState state;
    state.track = track;
    return propertyOf(state, "Metadata");
}

/// The value of one text of the metadata.
QString metadataText(const MprisTrack &track, const char *name)
{
    MprisState state;
    state.track = track;
    for (const auto &property : mprisProperties(state)) {
        if (property.first != "Metadata")
            continue;
        const char *value = nullptr;
        if (g_variant_lookup(property.second.get(), name, "&s", &value))
            return QString::fromUtf8(value);
    }
    return QStringLiteral("none");
}

TEST(MprisPropertiesTest, AreThoseThatChangeInTheOrderOfTheStandard)
{
    std::vector<std::string> names;
    for (const auto &property : mprisProperties({}))
        names.push_back(property.first.toStdString());
    EXPECT_THAT(names,
        ElementsAre("PlaybackStatus", "Metadata", "Volume", "CanGoNext", "CanGoPrevious", "CanPlay",
            "CanPause", "CanSeek"));
}

TEST(MprisPropertiesTest, StatusIsOneOfThree)
{
    MprisState state;
    EXPECT_EQ(propertyOf(state, "PlaybackStatus"), "'Stopped'");
    state.status = MprisState::Paused;
    EXPECT_EQ(propertyOf(state, "PlaybackStatus"), "'Paused'");
    state.status = MprisState::Playing;
    EXPECT_EQ(propertyOf(state, "PlaybackStatus"), "'Playing'");
}

TEST(MprisPropertiesTest, MetadataHasWhatIsKnown)
{
    EXPECT_EQ(metadataOf({}), "{}");
    MprisTrack track;
    track.number = 7;
    track.title = text("Jazz");
    EXPECT_EQ(metadataOf(track),
        "{'mpris:trackid': <objectpath '/org/vesk/play/7'>, 'xesam:title': <'Jazz'>}");
    track.artist = text("Someone");
    track.album = text("Station");
    track.artUrl = text("https://pictures.example/a b.png");
    track.length = std::chrono::seconds(90);
    EXPECT_EQ(metadataOf(track),
        "{'mpris:trackid': <objectpath '/org/vesk/play/7'>, 'mpris:length': <int64 90000000>, "
        "'mpris:artUrl': "
        "<'https://pictures.example/a%20b.png'>, 'xesam:title': <'Jazz'>, 'xesam:artist': "
        "<['Someone']>, 'xesam:album': <'Station'>}");
}

TEST(MprisPropertiesTest, TrackPathsAreObjectPaths)
{
    EXPECT_EQ(mprisTrackPath(0), "/org/mpris/MediaPlayer2/TrackList/NoTrack");
    for (const quint64 number : {quint64(0), quint64(1), ~quint64(0)})
        EXPECT_TRUE(g_variant_is_object_path(mprisTrackPath(number).constData()));
}

TEST(MprisPropertiesTest, TextsAreBoundedLinesOfValidUtf8)
{
    const QChar high(0xd83d);
    const QChar low(0xde00);
    const QString most(Mpris::MaxText, QLatin1Char('x'));
    struct Case {
        QString given;
        QString shown;
    };
    const Case cases[] {
        {text("one\ntwo\r\n\tthree"), text("one two three")},
        {text("nul") + QChar(0) + text("behind"), text("nul behind")},
        {text("\x1b[31mred\x7f"), text("[31mred")},
        {text("Ünï"), text("Ünï")},
        {most + most, most},
        // Not one half of a pair.
        {most.left(Mpris::MaxText - 1) + high + low, most.left(Mpris::MaxText - 1)},
        {text("lone ") + high + text(" half"), text("lone ? half")},
        {QString(), QString()},
    };
    for (const Case &c : cases) {
        MprisTrack track;
        track.number = 1;
        track.title = c.given;
        track.album = c.given;
        EXPECT_EQ(metadataText(track, "xesam:title"), c.shown);
        EXPECT_EQ(metadataText(track, "xesam:album"),
            c.given.isEmpty() ? QStringLiteral("none") : c.shown);
    }
}

TEST(MprisPropertiesTest, OnlyAddressesOfTheWebAreShown)
{
    struct Case {
        QString given;
        const char *shown;
    };
    const QString path = QString(Mpris::MaxAddress, QLatin1Char('p'));
    const Case cases[] {
        {text("http://a.example/1.png?x=1&y=2"), "http://a.example/1.png?x=1&y=2"},
        {text("https://[::1]:8/x"), "https://[::1]:8/x"},
        {text("https://a.example/ü"), "https://a.example/%C3%BC"},
        {text("file:///etc/passwd"), "none"},
        {text("FILE:///etc/passwd"), "none"},
        {text("data:image/png;base64,AAAA"), "none"},
        {text("javascript:alert(1)"), "none"},
        {text("//a.example/1.png"), "none"},
        {text("icon:local"), "none"},
        {text("http://"), "none"},
        {text("http:///x"), "none"},
        {text("http://a.example/") + path, "none"},
        {QString(), "none"},
    };
    for (const Case &c : cases) {
        MprisTrack track;
        track.number = 1;
        track.artUrl = c.given;
        EXPECT_EQ(metadataText(track, "mpris:artUrl"), QString::fromUtf8(c.shown));
    }
}

} // namespace
