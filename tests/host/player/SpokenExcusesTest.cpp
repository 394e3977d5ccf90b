// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/SpokenExcuses.h"

#include "api/core/Language.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace {

QString wordsOf(const char *url)
{
    SpokenExcuses excuses;
    excuses.add(text("/audio/off.*mp3"), Language::ntr(text("Off.")));
    excuses.add(text("/audio/abroad.ogg"), Language::ntr(text("Abroad.")));
    return excuses.wordsOf(QUrl::fromEncoded(url)).toString();
}

TEST(SpokenExcusesTest, AddressesAreKnownByTheEndOfTheirPath)
{
    EXPECT_EQ(wordsOf("http://a/audio/off.mp3"), text("Off."));
    EXPECT_EQ(wordsOf("https://b/service/Audio/OFF.enUS.MP3?key=1"), text("Off."));
    EXPECT_EQ(wordsOf("http://a/audio/abroad.ogg"), text("Abroad."));
}

TEST(SpokenExcusesTest, OtherAddressesAreNone)
{
    for (const char *url : {"http://a/audio/off.en/live.mp3", "http://a/audio/off.mp3/live",
             "http://a/audio/offmp3", "http://a/audio/takeoff.mp3", "http://a/audio/abroadxogg",
             "http://a/live?audio/off.mp3", ""})
        EXPECT_EQ(wordsOf(url), QString()) << url;
}

} // namespace
