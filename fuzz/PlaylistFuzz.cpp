// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "host/player/Playlist.h"

// The response from the URL of a stream: sniffing always decides on a type, and parsed playlists
// stay within their limits and contain http and https URLs only.

namespace {

const StreamContent Playlists[]
    = {StreamContent::M3u, StreamContent::Pls, StreamContent::Asx, StreamContent::Xspf};

void requireSound(const QUrl &url)
{
    FUZZ_REQUIRE(url.isValid() && !url.host().isEmpty());
    FUZZ_REQUIRE(url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
    for (const char c : url.toEncoded())
        FUZZ_REQUIRE(c > 0x20 && c < 0x7F);
}

void sniff(const QByteArray &bytes)
{
    const StreamContent content = sniffStream(bytes, true);
    FUZZ_REQUIRE(content != StreamContent::Undecided);
    FUZZ_REQUIRE(sniffStream(bytes + QByteArray(1024, 'x'), false) != StreamContent::Undecided);
    for (int size = 0; size <= bytes.size(); size += 1 + size / 8) {
        const StreamContent early = sniffStream(bytes.left(size), false);
        FUZZ_REQUIRE(early == StreamContent::Undecided || early == sniffStream(bytes, false));
    }
}

void parse(const QByteArray &bytes, const QUrl &base)
{
    for (const StreamContent content : Playlists) {
        FUZZ_REQUIRE(isPlaylist(content));
        const QList<QUrl> urls = parsePlaylist(bytes, content, base);
        FUZZ_REQUIRE(urls.size() <= PlaylistLimits::MaxEntries);
        for (const QUrl &url : urls)
            requireSound(url);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QUrl base(QStringLiteral("https://radio.example/dir/list.m3u?x=1"));
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    sniff(bytes);
    parse(bytes, base);
    parse(bytes, QUrl());
    // Occasionally of the maximum length, which exposes superlinear algorithms.
    if (size % 256 == 1)
        parse(bytes.repeated(PlaylistLimits::MaxBytes / bytes.size()), base);
    return 0;
}
