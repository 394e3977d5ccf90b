// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/support/Ear.h"
#include "tests/system/Product.h"

#include <gtest/gtest.h>

#include <vector>

/// Threads, descriptors and resident kilobytes of a process.
struct Footprint {
    int threads = 0;
    int descriptors = 0;
    int kilobytes = 0;

    static Footprint of(qint64 pid);
    /// The same once there are no more threads and descriptors than \a before, or after five
    /// seconds: closed connections take a moment to disappear.
    static Footprint settled(qint64 pid, const Footprint &before);
};

/// A product of its own for each test, which plays to a file.
class PlayFixture : public testing::Test {
protected:
    /// The player's states over some time.
    struct Watched {
        int longestBreakMs = 0; ///< while it was not playing
        int lastState = -1;
        QString error;
    };

    static constexpr int PollMs = 25;

    /// In the host's arguments "%1" is the test's own folder.
    explicit PlayFixture(QStringList hostArguments = {});
    void SetUp() override;

    /// Plays a row of a search's results.
    QVariantHash play(const QString &search, int row = 0) const;
    QVariantHash state() const;
    bool waitForState(int wanted, int milliseconds = 20000) const;
    void command(const char *method) const;
    Watched watch(int milliseconds) const;
    /// Whether a second of sound is written within three seconds.
    bool isHeard() const;
    /// Waits until the file has so many seconds of sound.
    bool waitForSound(int seconds) const;
    /// The sound in the file after a stop.
    ear::Sound heard() const;
    /// The melody of a station's stream.
    std::vector<double> melody(const QString &id, int stream = 0) const;
    QStringList requests(const char *page) const;

    QTemporaryDir folder;
    const QString wav;
    Product product;

private:
    bool waitForSize(qint64 bytes, int milliseconds) const;
};
