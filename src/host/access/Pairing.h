// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/access/PairedDevices.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

/// Lets one device in: an owner starts a pairing and shows its code, and the device that sends the
/// code within two minutes is paired. There is one pairing at a time; a code works once. Nothing
/// here logs a code or a token. Main thread, with an event loop; \a devices outlives it.
class Pairing : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds Duration {120};
    /// With the last of these wrong codes the pairing ends.
    static constexpr int MaxWrongCodes = 5;

    enum class State {
        Closed, ///< none was started, or it was stopped
        Open,
        Paired,
        Failed, ///< too many wrong codes
        Expired,
    };
    struct Status {
        State state = State::Closed;
        int seconds = 0; ///< that an open pairing has left, rounded up
        /// Who was paired, empty before.
        QString deviceId;
        QString deviceName;
    };

    enum class Refusal {
        Closed, ///< no pairing is open
        Invalid, ///< no code, or no name; does not count as a wrong code
        WrongCode,
        Ended, ///< the code was wrong, and it was the last that could be tried
        NotSaved, ///< the code was right and can be sent again, in its time
    };
    struct Refused {
        Refusal reason = Refusal::Closed;
        int left = 0; ///< after WrongCode: how many may follow
    };
    using Answer = std::function<void(const Result<PairedDevices::Added, Refused> &)>;

    /// Milliseconds of a clock that is never set back, and goes on while the machine sleeps.
    using Clock = std::function<qint64()>;
    static qint64 bootTime();

    explicit Pairing(
        PairedDevices *devices, Clock clock = &Pairing::bootTime, QObject *parent = nullptr);

    /// Begins anew, whatever the state is, and returns the code: six digits.
    QString start(AccessRole role);
    AccessRole role() const { return m_role; }
    /// A device whose code is being taken at this moment is not paired either.
    void stop();
    Status status() const;

    /// Calls \a answer once, maybe before this returns; not when this is destroyed first.
    /// \a address: the IP address that the device comes from.
    void redeem(
        const QString &code, const QString &name, const QString &address, const Answer &answer);

Q_SIGNALS:
    /// status() has another state, or a new pairing is open.
    void changed();

private:
    void end(State state);
    bool isOver() const;
    void checkTime();
    Refused countWrongCode(const QString &address);
    void pair(const QString &name, const QString &address, const Answer &answer);

    PairedDevices *const m_devices;
    const Clock m_clock;
    QTimer m_timer;
    int m_round = 0; ///< of starts and stops
    State m_state = State::Closed;
    AccessRole m_role = AccessRole::Listener;
    QByteArray m_code;
    qint64 m_end = 0;
    int m_wrongCodes = 0;
    bool m_isTaken = false; ///< a device has sent the code and is being written to the disk
    QString m_deviceId;
    QString m_deviceName;
};
