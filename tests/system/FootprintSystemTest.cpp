// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Text.h"
#include "tests/system/PlayFixture.h"

#include <QFile>
#include <QTemporaryFile>

#include <algorithm>
#include <limits>

namespace {

/// Its host reports how much of its heap is in use, unless a sanitizer has a heap of its own.
class PlaySystemFootprint : public PlayFixture {
protected:
    static void SetUpTestSuite()
    {
#ifdef VESK_HEAP_REPORT
        qputenv("LD_PRELOAD", VESK_HEAP_REPORT);
        qputenv("VESK_TEST_HEAP", reports().fileName().toUtf8());
#endif
    }

    static void TearDownTestSuite()
    {
        qunsetenv("LD_PRELOAD");
        qunsetenv("VESK_TEST_HEAP");
    }

    static QTemporaryFile &reports()
    {
        static QTemporaryFile file;
        static const bool isOpen = file.open();
        EXPECT_TRUE(isOpen);
        return file;
    }

    void switchTo(int station) const
    {
        play(QStringLiteral("trial%20%1").arg(station % 2 ? text("01") : text("15")));
        ASSERT_TRUE(waitForState(2));
    }

    void stop() const
    {
        command("player.stop");
        EXPECT_TRUE(waitForState(0));
    }

    void switchOften() const
    {
        for (int i = 0; i < 50; ++i)
            switchTo(i);
        stop();
    }

    /// In bytes: the least of several plays, because what a play used is given back a moment later.
    qint64 heapInUse() const
    {
        EXPECT_TRUE(reports().resize(0));
        for (int i = 0; i < 10; ++i) {
            switchTo(i);
            stop();
        }
        qint64 least = std::numeric_limits<qint64>::max();
        QFile file(reports().fileName());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        while (!file.atEnd()) {
            const qint64 bytes = file.readLine().trimmed().toLongLong();
            EXPECT_GT(bytes, 0);
            least = std::min(least, bytes);
        }
        return least;
    }
};

TEST_F(PlaySystemFootprint, FiveHundredSwitchesLeaveNothingBehind)
{
    const qint64 host = product.host().processId();
    const auto measure = [&](int rounds) -> qint64 {
        qint64 bytes = 0;
        for (int i = 0; i < rounds; ++i) {
            switchOften();
#ifdef VESK_HEAP_REPORT
            bytes = heapInUse();
#endif
        }
        return bytes;
    };
    // Caches fill meanwhile.
    const qint64 bytesBefore = measure(3);
    const Footprint before = Footprint::of(host);
    const qint64 growth = measure(5) - bytesBefore;
    const Footprint after = Footprint::settled(host, before);
    EXPECT_LE(after.threads, before.threads);
    EXPECT_LE(after.descriptors, before.descriptors);
    // In 300 switches. Libraries' caches account for 20 to 40 KB. The sanitizer looks for leaks
    // itself when the host ends.
    RecordProperty("growth", std::to_string(growth));
    EXPECT_LT(growth, 150 * 1024);
}

} // namespace
