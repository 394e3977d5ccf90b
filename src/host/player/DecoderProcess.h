// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <sys/types.h>

/// A vesk-decoder process and the socket to it. The process exits when the socket is closed. May be
/// used by one thread at a time, except for kill().
class DecoderProcess {
public:
    /// Starts the program, which takes about a millisecond. On failure isRunning() is false.
    DecoderProcess();
    /// Kills the process and reaps it.
    ~DecoderProcess();
    DecoderProcess(const DecoderProcess &) = delete;
    DecoderProcess &operator=(const DecoderProcess &) = delete;

    /// False if it could not be started; problem() says why.
    bool isRunning() const { return m_pid > 0; }
    const QString &problem() const { return m_problem; }
    /// Whether it could not be started, or has ended by itself.
    bool hasEnded() const;
    /// The host's end of a stream socket, non-blocking. Owned by this object.
    int socket() const { return m_socket; }
    pid_t pid() const { return m_pid; }

    /// Shuts the socket down and kills the process, without waiting. Any thread, at any time before
    /// the destructor.
    void kill();

private:
    pid_t m_pid = -1;
    int m_socket = -1;
    QString m_problem;
};
