// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <csignal>
#include <functional>
#include <vector>

/// As long as it lives, what ends a command that waits calls a function, from the main context:
/// SIGINT, SIGTERM, SIGHUP, and that the reader of the output is gone. A write to a pipe without a
/// reader fails then instead of ending the process. Main thread; one at a time.
class Interruption {
public:
    /// \a output: the descriptor of the output; -1 for none.
    Interruption(int output, std::function<void()> interrupted);
    ~Interruption();

    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

private:
    static int signalCame(void *interruption);
    static int readerGone(void *interruption);

    const std::function<void()> m_interrupted;
    std::vector<unsigned> m_signals;
    /// 0 for none.
    unsigned m_reader = 0;
    struct sigaction m_formerPipe = {};
};
