// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

class DecoderProcess;

/// A decoder process that has started up and waits for the next stream, so that a listener who goes
/// from station to station does not wait for its start each time, which is most of a switch. It is
/// ended when nobody has taken it for a while.
class SpareDecoder : public QObject {
    Q_OBJECT

public:
    /// How long it waits.
    static constexpr std::chrono::seconds Lifetime {60};

    explicit SpareDecoder(std::chrono::milliseconds lifetime = Lifetime, QObject *parent = nullptr);
    ~SpareDecoder() override;

    /// Starts a process unless one waits; it then waits for the whole time again. Main thread.
    void prepare();
    /// The process that waits, or else a new one. Any thread.
    std::unique_ptr<DecoderProcess> take();

private:
    void drop();

    QTimer m_end;
    VeskMutex m_mutex;
    std::unique_ptr<DecoderProcess> m_process VESK_GUARDED_BY(m_mutex);
};
