// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <chrono>
#include <thread>

/// The standard output and error of a plug-in process, copied line by line into the host's log. A
/// thread of its own reads the pipe, so that the process does not block while the host is busy.
///
/// Main thread.
class PluginOutput {
public:
    /// A longer line is split.
    static constexpr int MaxLine = 16 * 1024;
    /// More than this at a time, or in each second on average, is dropped: a plug-in that prints
    /// without end costs the host no more.
    static constexpr qint64 MaxBurst = 32 * 1024 * 1024;
    static constexpr qint64 MaxPerSecond = 4 * 1024 * 1024;

    /// \a plugin is the id of the plug-in, for the log.
    explicit PluginOutput(const QString &plugin = {});
    ~PluginOutput();

    /// The descriptor for the process to print to; -1 when there are no more descriptors. The
    /// caller calls closeWritingEnd() once the process has it.
    int writingEnd() const { return m_ends[1]; }
    void closeWritingEnd();

    /// Waits for the end of the output, which comes with the end of the process. Returns the last
    /// line.
    QString finish();

private:
    using Clock = std::chrono::steady_clock;

    void run();
    void processLines(QByteArray &received);
    void processLine(QByteArray line);
    void refill();

    const QString m_plugin;
    int m_ends[2] = {-1, -1};
    std::atomic<bool> m_isFinishing {false};

    // The thread's, until it was joined.
    QByteArray m_lastLine;
    qint64 m_budget = MaxBurst; ///< bytes that may be logged now
    Clock::time_point m_refilled;
    qint64 m_dropped = 0; ///< lines since something was logged

    std::thread m_thread;
};
