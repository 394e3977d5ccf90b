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

/// Calls a host over JSON-RPC, with a time limit for each call. Any thread.
class HostLink {
public:
    explicit HostLink(const QString &url);

    /// The whole response; empty after the time limit.
    QVariantHash call(const char *method, const QVariantHash &params, long milliseconds) const;

private:
    const QByteArray m_url;
};

/// Records a play over time: the samples in its output, a WAV file that grows in real time, and the
/// player's states. Polls on threads of its own.
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

    /// Watches the host with process \a pid, whose output is \a wav.
    Watch(const QString &url, const QString &wav, qint64 pid);
    ~Watch();

    Clock::time_point begin() const { return m_begin; }
    std::vector<Samples> samples() const;
    std::vector<State> states() const;
    State lastState() const;
    /// The longest time that the host took for a response.
    double slowestAnswer() const;
    /// The most resident memory of the host and its children together.
    double megabytes() const;
    /// Stops watching; the records stay.
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

/// All descendants of process \a pid.
std::vector<qint64> childrenOf(qint64 pid);
double residentMegabytes(qint64 pid);
