// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/Pairing.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "host/access/Secrets.h"

#include <QPointer>

#include <algorithm>
#include <ctime>
#include <utility>

VESK_LOGGER("Host")

namespace {

constexpr qint64 MillisecondsPerSecond = 1000;

bool isCode(const QString &text)
{
    return text.size() == PairingCodeLength && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}

} // namespace

qint64 Pairing::bootTime()
{
    timespec time {};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return qint64(time.tv_sec) * MillisecondsPerSecond + time.tv_nsec / 1000000;
}

Pairing::Pairing(PairedDevices *devices, Clock clock, QObject *parent)
    : QObject(parent)
    , m_devices(devices)
    , m_clock(std::move(clock))
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    veskConnect(&m_timer, &QTimer::timeout, this, &Pairing::checkTime);
}

QString Pairing::start(AccessRole role)
{
    VESK_ASSERT_OWN_THREAD();
    ++m_round;
    m_state = State::Open;
    m_role = role;
    m_code = makePairingCode();
    m_end = m_clock() + std::chrono::milliseconds(Duration).count();
    m_wrongCodes = 0;
    m_isTaken = false;
    m_deviceId.clear();
    m_deviceName.clear();
    m_timer.start(Duration);
    const QString code = QString::fromLatin1(m_code);
    Q_EMIT changed();
    return code;
}

void Pairing::stop()
{
    VESK_ASSERT_OWN_THREAD();
    ++m_round;
    if (m_state != State::Closed)
        end(State::Closed);
}

void Pairing::end(State state)
{
    m_timer.stop();
    m_code.clear();
    m_isTaken = false;
    m_state = state;
    if (state != State::Paired) {
        m_deviceId.clear();
        m_deviceName.clear();
    }
    Q_EMIT changed();
}

bool Pairing::isOver() const
{
    return m_state == State::Open && !m_isTaken && m_clock() >= m_end;
}

void Pairing::checkTime()
{
    if (isOver())
        end(State::Expired);
    else if (m_state == State::Open && !m_timer.isActive())
        m_timer.start(std::chrono::seconds(1)); // the timer's clock is another one
}

Pairing::Status Pairing::status() const
{
    VESK_ASSERT_OWN_THREAD();
    if (isOver())
        return {State::Expired, 0, {}, {}};
    Status status {m_state, 0, m_deviceId, m_deviceName};
    if (m_state == State::Open) {
        const qint64 left = std::max<qint64>(m_end - m_clock(), 0);
        status.seconds
            = static_cast<int>((left + MillisecondsPerSecond - 1) / MillisecondsPerSecond);
    }
    return status;
}

void Pairing::redeem(
    const QString &code, const QString &name, const QString &address, const Answer &answer)
{
    VESK_ASSERT_OWN_THREAD();
    if (!isCode(code) || !DeviceList::isName(name))
        return answer(failure(Refused {Refusal::Invalid, 0}));
    checkTime();
    if (m_state != State::Open || m_isTaken)
        return answer(failure(Refused {Refusal::Closed, 0}));
    if (!isSameSecret(code.toLatin1(), m_code))
        return answer(failure(countWrongCode(address)));
    pair(name, address, answer);
}

Pairing::Refused Pairing::countWrongCode(const QString &address)
{
    const int left = MaxWrongCodes - ++m_wrongCodes;
    if (left > 0) {
        VESK_WARN("A wrong code for pairing came from " << address << "; " << left
                                                        << " more may be tried.");
        return {Refusal::WrongCode, left};
    }
    VESK_WARN("A wrong code for pairing came from " << address
                                                    << "; it was the last, the pairing has ended.");
    end(State::Failed);
    return {Refusal::Ended, 0};
}

void Pairing::pair(const QString &name, const QString &address, const Answer &answer)
{
    m_isTaken = true;
    const auto done = [this, guard = QPointer<Pairing>(this), devices = m_devices, round = m_round,
                          answer](const Result<PairedDevices::Added, CMError> &added) {
        const bool isCurrent = guard && round == m_round;
        if (added && !isCurrent)
            devices->revoke(added->device.id, [](const CMError &) {});
        if (!guard)
            return;
        if (!isCurrent)
            return answer(failure(Refused {Refusal::Closed, 0}));
        m_isTaken = false;
        if (!added) {
            checkTime();
            return answer(failure(Refused {Refusal::NotSaved, 0}));
        }
        m_deviceId = added->device.id;
        m_deviceName = added->device.name;
        end(State::Paired);
        answer(*added);
    };
    m_devices->add(name, m_role, address, done);
}
