// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Compression.h"

#include <gtest/gtest.h>

using namespace directory;

namespace {

TEST(Compression, GzipIsAcceptedAsAcceptEncodingSays)
{
    for (const char *header :
        {"gzip", "deflate, gzip", "br;q=1.0, GZIP;q=0.8", "*", "gzip ; q=0.001"})
        EXPECT_TRUE(acceptsGzip(header)) << header;
    for (const char *header :
        {"", "identity", "gzip;q=0", "gzip; q=0.0, *", "*;q=0", "xgzip", "deflate"})
        EXPECT_FALSE(acceptsGzip(header)) << header;
}

TEST(Compression, MakesTextMuchSmaller)
{
    const std::string text(100000, 'x');
    const std::string gzip = compressed(text, Compression::Gzip);
    EXPECT_LT(gzip.size(), 1000u);
    EXPECT_EQ(gzip.substr(0, 2), "\x1F\x8B");
    EXPECT_EQ(compressed(text, Compression::Zlib)[0], '\x78');
}

} // namespace
