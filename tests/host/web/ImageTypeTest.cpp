// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/web/ImageType.h"

#include <gmock/gmock.h>

namespace {

TEST(ImageTypeTest, RecognizesPicturesByTheirFirstBytes)
{
    EXPECT_EQ(imageTypeOf(QByteArray("\x89PNG\r\n\x1a\n....")), "image/png");
    EXPECT_EQ(imageTypeOf(QByteArray("\xff\xd8\xff\xe0....")), "image/jpeg");
    EXPECT_EQ(imageTypeOf("GIF87a...."), "image/gif");
    EXPECT_EQ(imageTypeOf("GIF89a...."), "image/gif");
    EXPECT_EQ(imageTypeOf(QByteArray("RIFF\0\0\0\0WEBPVP8 ", 16)), "image/webp");
}

TEST(ImageTypeTest, RecognizesNothingElse)
{
    for (const char *text : {"", "\x89PNG", "\xff\xd8", "GIF88a", "RIFF....WAVE",
             "<svg xmlns='http://www.w3.org/2000/svg'/>", "<?xml version='1.0'?><svg/>",
             "<!DOCTYPE html><html></html>", " \x89PNG\r\n\x1a\n", "BM......"})
        EXPECT_EQ(imageTypeOf(text), "") << text;
}

} // namespace
