// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <sys/types.h>

/// One vesk-decoder and the socket to it. The process ends by itself when the socket does. Any
/// thread, one at a time.
class DecoderProcess {
public:
    /// Starts the program; check isRunning(). Takes a millisecond.
    DecoderProcess();
    /// Ends the process without a word and waits until it is gone.
    ~DecoderProcess();
    DecoderProcess(const DecoderProcess &) = delete;
    DecoderProcess &operator=(const DecoderProcess &) = delete;

    /// False when it could not be started; problem() says why.
    bool isRunning() const { return m_pid > 0; }
    const QString &problem() const { return m_problem; }
    /// A non-blocking stream socket, which stays this object's.
    int socket() const { return m_socket; }
    pid_t pid() const { return m_pid; }

    /// Ends the conversation and the process, without waiting. Any thread, at any time.
    void kill();

private:
    pid_t m_pid = -1;
    int m_socket = -1;
    QString m_problem;
};
