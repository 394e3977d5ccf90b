// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "tests/faults/StreamingServer.h"

#include <QByteArray>
#include <QString>
#include <QVariantHash>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

/// Asks a host over JSON-RPC and never waits longer than it is told to. Any thread.
class HostLink {
public:
    explicit HostLink(const QString &url);

    /// The whole answer; empty when none came in time.
    QVariantHash call(const char *method, const QVariantHash &params, long milliseconds) const;

private:
    const QByteArray m_url;
};

/// What a play did, second by second: what was written to the output, a WAV file that grows in real
/// time, and what the player said. Looks by itself, on threads of its own.
class Watch {
public:
    struct Samples {
        Clock::time_point at;
        bool loud; ///< not only silence
    };
    struct State {
        Clock::time_point at;
        int state; ///< -1: no answer
        QString error;
        QString problem;
    };

    /// Of the host with process \a pid, whose output is \a wav.
    Watch(const QString &url, const QString &wav, qint64 pid);
    ~Watch();

    Clock::time_point begin() const { return m_begin; }
    std::vector<Samples> samples() const;
    std::vector<State> states() const;
    State lastState() const;
    /// The longest that the host took for an answer.
    double slowestAnswer() const;
    /// The most memory that host and children had resident together.
    double megabytes() const;
    /// Ends it; what was seen stays.
    void stop();

private:
    void watchSamples(const QString &wav);
    void watchState(const HostLink &link, qint64 pid);

    const Clock::time_point m_begin = Clock::now();
    std::atomic<bool> m_stop {false};

    mutable VeskMutex m_mutex;
    std::vector<Samples> m_samples VESK_GUARDED_BY(m_mutex);
    std::vector<State> m_states VESK_GUARDED_BY(m_mutex);
    double m_slowestAnswer VESK_GUARDED_BY(m_mutex) = 0;
    double m_megabytes VESK_GUARDED_BY(m_mutex) = 0;

    std::thread m_samplesThread;
    std::thread m_stateThread;
};

/// The processes that \a pid started, and theirs.
std::vector<qint64> childrenOf(qint64 pid);
double residentMegabytes(qint64 pid);
