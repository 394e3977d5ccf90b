// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <thread>

/// What a worker process prints, line by line as it comes into the host's log. A thread of its own
/// reads it, so that a process never waits for a host that is busy.
class PluginOutput {
public:
    /// The longest line that is taken; a longer one is cut in pieces.
    static constexpr int MaxLine = 16 * 1024;

    PluginOutput();
    ~PluginOutput();

    /// The descriptor for the process to print to; -1 when there are no more descriptors. The
    /// caller closes it with closeWritingEnd() once the process has it.
    int writingEnd() const { return m_ends[1]; }
    void closeWritingEnd();

    /// Waits for the end of what is printed, which comes with the end of the process; the last
    /// line.
    QString finish();

private:
    void run();
    void take(QByteArray &received);
    void print(QByteArray line);

    int m_ends[2] = {-1, -1};
    QString m_lastLine; ///< the thread's until it was joined
    std::thread m_thread;
};
