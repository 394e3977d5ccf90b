// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

namespace {

class PlaySystemFootprint : public PlayFixture { };

TEST_F(PlaySystemFootprint, FiveHundredSwitchesLeaveNothingBehind)
{
    const auto switchTo = [this](int station) {
        play(QStringLiteral("trial%20%1").arg(station % 2 ? text("01") : text("15")));
        ASSERT_TRUE(waitForState(2));
    };
    const auto stop = [this] {
        command("player.stop");
        EXPECT_TRUE(waitForState(0));
    };
    const qint64 host = product.host().processId();
    for (int i = 0; i < 100; ++i)
        switchTo(i);
    stop();
    const Footprint before = Footprint::of(host);
    for (int i = 0; i < 500; ++i)
        switchTo(i);
    stop();
    const Footprint after = Footprint::settled(host, before);
    RecordProperty("kilobytesBefore", before.kilobytes);
    RecordProperty("kilobytesAfter", after.kilobytes);
    EXPECT_LE(after.threads, before.threads);
    EXPECT_LE(after.descriptors, before.descriptors);
#ifndef __SANITIZE_ADDRESS__
    // A leak of a kilobyte per switch would show. The sanitizer keeps freed memory for a while, and
    // looks for leaks itself when the host ends.
    EXPECT_LE(after.kilobytes, before.kilobytes + 500);
#endif
}

} // namespace
