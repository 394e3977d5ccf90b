// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "host/player/HlsPlaylist.h"
#include "host/player/Playlist.h"

#include <algorithm>

// HLS playlists: whatever numbers they contain, the parsed ones are in ranges that are safe to
// calculate with, and all URLs are http or https.

namespace {

using Milliseconds = std::chrono::milliseconds;

bool isSound(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty()
        && (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

void requireSound(const HlsSegment &segment)
{
    FUZZ_REQUIRE(isSound(segment.url));
    FUZZ_REQUIRE(segment.map.isEmpty() || isSound(segment.map));
    FUZZ_REQUIRE(segment.number >= 0 && segment.number < Q_INT64_C(1) << 54);
    FUZZ_REQUIRE(segment.duration >= Milliseconds(0) && segment.duration <= Milliseconds(60000));
}

void requireSound(const HlsPlaylist &playlist)
{
    FUZZ_REQUIRE(playlist.segments.size() <= HlsPlaylist::MaxSegments);
    FUZZ_REQUIRE(playlist.targetDuration >= Milliseconds(1000));
    FUZZ_REQUIRE(playlist.targetDuration <= Milliseconds(60000));
    qint64 before = -1;
    for (const HlsSegment &segment : playlist.segments) {
        requireSound(segment);
        FUZZ_REQUIRE(segment.number > before);
        before = segment.number;
    }
    const int first = playlist.firstSegment();
    FUZZ_REQUIRE(first >= 0 && first < std::max(playlist.segments.size(), 1));
}

void requireSoundVariants(const HlsPlaylist &playlist)
{
    FUZZ_REQUIRE(playlist.variants.size() <= HlsPlaylist::MaxVariants);
    const HlsVariant best = playlist.bestVariant();
    bool found = !playlist.isMaster();
    for (const HlsVariant &variant : playlist.variants) {
        FUZZ_REQUIRE(isSound(variant.url) && variant.bandwidth >= 0);
        found = found || (variant.url == best.url && variant.bandwidth == best.bandwidth);
    }
    FUZZ_REQUIRE(found);
}

void parse(const QByteArray &text)
{
    const HlsPlaylist playlist
        = parseHlsPlaylist(text, QUrl(QStringLiteral("http://radio.example/live/list.m3u8?x=1")));
    requireSound(playlist);
    requireSoundVariants(playlist);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    parse(bytes);
    // Occasionally of the maximum length, which exposes superlinear algorithms.
    if (size % 256 == 1)
        parse(bytes.repeated(PlaylistLimits::MaxBytes / bytes.size()));
    return 0;
}
