// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "modules/tunein/cb_tunein.h"
#include "tests/modules/tunein/TuneInHost.h"
#include "tests/support/LogCapture.h"
#include "tests/support/WorkerThread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

class TuneInBrowseNode;

/// A clock that stands still until a test advances it.
struct FakeClock {
    /// Makes the plug-in use this clock, which starts an hour after the last test's end.
    static void install();
    static void advance(qint64 milliseconds);
    static void setMonotonic(qint64 milliseconds);
    static qint64 monotonic();
    /// Seconds since the Unix epoch.
    static qint64 epochSeconds();
};

/// The plug-in's worker in its host. Nothing runs until start(), so that a test can set values and
/// answers first.
class TuneInFixture : public testing::Test, protected TuneInHost {
protected:
    TuneInFixture();
    ~TuneInFixture() override;

    static QVariantHash defaultConfig();
    /// Creates the worker as a host does, on a thread of its own, and waits until the state of the
    /// network has reached it.
    void start(const QVariantHash &config = defaultConfig());
    void stop();
    CMTuneInWorker *worker() const;
    TuneInBrowseNode *browseNode() const;
    /// Runs \a function on the worker's thread and waits for it.
    void onWorker(const std::function<void()> &function) { m_thread->call(function); }
    /// Changes the host's value and waits until it has reached the worker.
    void setNetwork(bool connected);

    /// Expects exactly these requests since the last call.
    void expectRequests(const QList<QByteArray> &lines);

    /// The log so far, after the worker has finished what it is doing.
    LogCapture &log();

private:
    LogCapture m_log {"CB_TuneIn"};
    std::unique_ptr<WorkerThread> m_thread;
};

/// The query items at the end of every browse request, for the values that TuneInHost sets.
extern const QByteArray CommonItems;
