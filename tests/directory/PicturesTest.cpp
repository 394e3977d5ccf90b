// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Pictures.h"

#include <gtest/gtest.h>

using namespace directory;

namespace {

int widthOf(const Answer &png)
{
    const auto byte = [&png](std::size_t at) { return static_cast<unsigned char>(png.body[at]); };
    return byte(18) * 256 + byte(19);
}

TEST(Pictures, LogosHaveTheSizesOfTheWebApi)
{
    EXPECT_EQ(widthOf(logoPicture("/logo/s1t.png")), 75);
    EXPECT_EQ(widthOf(logoPicture("/logo/s1q.png")), 145);
    EXPECT_EQ(widthOf(logoPicture("/logo/s1.png")), 145);
    EXPECT_EQ(widthOf(logoPicture("/logo/s1d.png")), 300);
    EXPECT_EQ(widthOf(logoPicture("/logo/s1g.png")), 600);
}

TEST(Pictures, ALogoIsASmallReproduciblePng)
{
    const Answer logo = logoPicture("/logo/s20105q.png");
    EXPECT_EQ(logo.status, 200);
    EXPECT_EQ(logo.contentType, "image/png");
    EXPECT_EQ(logo.body.substr(0, 8), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(logo.body.substr(logo.body.size() - 8, 4), "IEND");
    EXPECT_LT(logo.body.size(), 5000u);
    EXPECT_EQ(logo.body, logoPicture("/logo/s20105.png").body);
    EXPECT_NE(logo.body, logoPicture("/logo/s20106q.png").body);
}

TEST(Pictures, OtherPathsAre404)
{
    for (const char *path : {"/logo/", "/logo/.png", "/logo/q.png", "/logo/../../etc/passwd.png",
             "/logo/s1q.gif", "/logo/aaaaaaaaaaaaaaaaaaaaaaaaa.png"})
        EXPECT_EQ(logoPicture(path).status, 404) << path;
    EXPECT_EQ(placeholderAudio("/service/Audio/other.enUS.mp3").status, 404);
}

TEST(Pictures, ThePlaceholderIsWholeMpegFrames)
{
    const Answer audio = placeholderAudio("/service/Audio/georestricted.enUS.mp3");
    EXPECT_EQ(audio.contentType, "audio/mpeg");
    ASSERT_EQ(audio.body.size() % 78, 0u);
    for (std::size_t at = 0; at < audio.body.size(); at += 78)
        EXPECT_EQ(audio.body.substr(at, 2), "\xFF\xF3");
}

} // namespace
