// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "fuzz/fuzzing.h"
#include "host/player/MediaHead.h"
#include "host/player/MediaLayout.h"

#include <algorithm>

// The layout of a file and the search for a place in it: whatever the bytes are, all offsets are in
// the file, all times in its duration, and the search ends.

namespace {

using Microseconds = std::chrono::microseconds;

constexpr qint64 FileSize = Q_INT64_C(100000000);

void requireSound(const MediaLayout &layout)
{
    FUZZ_REQUIRE(layout.begin >= 0 && layout.begin <= FileSize);
    FUZZ_REQUIRE(layout.duration.count() >= 0);
    FUZZ_REQUIRE(layout.head.size() <= MediaLayout::HeadSize);
    for (std::size_t i = 1; i < layout.index.size(); ++i) {
        FUZZ_REQUIRE(layout.index[i].offset > layout.index[i - 1].offset);
        FUZZ_REQUIRE(layout.index[i].time >= layout.index[i - 1].time);
    }
}

void search(const MediaLayout &layout, const QByteArray &bytes, Microseconds time)
{
    MediaSearch search(layout, time);
    int pieces = 0;
    while (const auto piece = search.next()) {
        FUZZ_REQUIRE(++pieces <= MediaSearch::MostPieces);
        FUZZ_REQUIRE(piece->offset >= 0 && piece->length >= 0);
        FUZZ_REQUIRE(piece->offset + piece->length <= FileSize);
        search.take(bytes);
    }
    if (const auto place = search.place())
        FUZZ_REQUIRE(place->offset >= 0 && place->offset <= FileSize);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    MediaHead head;
    head.take(reinterpret_cast<const char *>(data), size);
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    MediaLayout layout = mediaLayout(head.bytes(), head.begin(), FileSize);
    if (layout.needsEnd())
        layout.takeEnd(bytes);
    requireSound(layout);
    for (const Microseconds time : {Microseconds(0), layout.duration / 2, layout.duration})
        search(layout, bytes, time);
    return 0;
}
