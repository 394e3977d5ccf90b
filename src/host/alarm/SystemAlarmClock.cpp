// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/SystemAlarmClock.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"

#include <QFileInfo>
#include <QSocketNotifier>

#include <sys/timerfd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <unistd.h>

VESK_LOGGER("Alarms")

/// A timer of the kernel's that the event loop waits for.
class TimerDescriptor {
public:
    /// \a expired gets true when the timer has run out, false when the clock was set meanwhile.
    TimerDescriptor(clockid_t clock, std::function<void(bool hasExpired)> expired)
        : m_descriptor(timerfd_create(clock, TFD_NONBLOCK | TFD_CLOEXEC))
        , m_expired(std::move(expired))
    {
        if (m_descriptor < 0) {
            VESK_ERROR("There is no timer for alarms: " << std::strerror(errno));
            return;
        }
        m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
        QObject::connect(
            m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { read(); });
    }
    ~TimerDescriptor()
    {
        m_notifier.reset();
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    Q_DISABLE_COPY(TimerDescriptor)

    /// A \a time of zero stops it.
    void set(timespec time, int flags)
    {
        itimerspec setting {};
        setting.it_value = time;
        // Without TFD_TIMER_CANCEL_ON_SET this fails only for arguments that are wrong. With it,
        // the clock may have been set since the last time, which the next read() finds out.
        if (m_descriptor >= 0 && timerfd_settime(m_descriptor, flags, &setting, nullptr) != 0
            && errno != ECANCELED)
            VESK_ERROR("An alarm's timer cannot be set: " << std::strerror(errno));
    }
    std::chrono::milliseconds left() const
    {
        itimerspec setting {};
        if (m_descriptor < 0 || timerfd_gettime(m_descriptor, &setting) != 0)
            return {};
        return std::chrono::seconds(setting.it_value.tv_sec)
            + std::chrono::milliseconds(setting.it_value.tv_nsec / (1000 * 1000));
    }

private:
    void read()
    {
        quint64 count = 0;
        const bool hasExpired = ::read(m_descriptor, &count, sizeof count) == sizeof count;
        if (!hasExpired && errno != ECANCELED)
            return;
        // It may destroy this object.
        const auto expired = m_expired;
        expired(hasExpired);
    }

    const int m_descriptor;
    const std::function<void(bool)> m_expired;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

namespace {

class SystemTimer : public AlarmTimer {
public:
    SystemTimer()
        : m_timer(CLOCK_BOOTTIME, [this](bool) { expire(); })
    {
    }

    void start(std::chrono::milliseconds time, std::function<void()> action) override
    {
        VESK_ASSERT_THREAD(m_check);
        m_action = std::move(action);
        // Zero would stop it.
        const auto wait = std::max(time, std::chrono::milliseconds(1));
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(wait);
        const std::chrono::nanoseconds rest = wait - seconds;
        m_timer.set({static_cast<time_t>(seconds.count()), static_cast<long>(rest.count())}, 0);
    }
    void stop() override
    {
        VESK_ASSERT_THREAD(m_check);
        m_action = {};
        m_timer.set({}, 0);
    }
    std::chrono::milliseconds left() const override { return m_timer.left(); }

private:
    void expire()
    {
        // It may start the timer anew, or destroy it.
        const auto action = std::exchange(m_action, {});
        if (action)
            action();
    }

    std::function<void()> m_action;
    TimerDescriptor m_timer;
    const VeskThreadCheck m_check;
};

} // namespace

SystemAlarmClock::SystemAlarmClock(const QString &zoneFile, QObject *parent)
    : AlarmClock(parent)
    , m_zoneFile(zoneFile)
{
    connect(&m_zoneWatch, &QFileSystemWatcher::fileChanged, this, &AlarmClock::changed);
    connect(&m_zoneWatch, &QFileSystemWatcher::directoryChanged, this, &AlarmClock::changed);
}

SystemAlarmClock::~SystemAlarmClock() = default;

Moment SystemAlarmClock::now() const
{
    timespec now {};
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec;
}

UtcOffset SystemAlarmClock::zone() const
{
    // Reads TZ, or else /etc/localtime if that file is another one than the last time.
    tzset();
    return [](Moment moment) {
        const time_t time = moment;
        tm local {};
        return localtime_r(&time, &local) ? static_cast<int>(local.tm_gmtoff) : 0;
    };
}

void SystemAlarmClock::wakeAt(std::optional<Moment> moment)
{
    VESK_ASSERT_OWN_THREAD();
    watchZone(moment.has_value());
    if (!moment) {
        m_timer.reset();
        return;
    }
    if (!m_timer) {
        m_timer = std::make_unique<TimerDescriptor>(CLOCK_REALTIME, [this](bool hasExpired) {
            if (hasExpired)
                Q_EMIT reached();
            else
                Q_EMIT changed();
        });
    }
    // Zero would stop it.
    m_timer->set({static_cast<time_t>(std::max<Moment>(*moment, 1)), 0},
        TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET);
}

/// The file is mostly a link that is replaced, which only its folder tells, and sometimes a copy
/// that is overwritten, which only the file tells.
void SystemAlarmClock::watchZone(bool on)
{
    const QStringList watched = m_zoneWatch.files() + m_zoneWatch.directories();
    if (!on) {
        if (!watched.isEmpty())
            m_zoneWatch.removePaths(watched);
        return;
    }
    const QStringList wanted {m_zoneFile, QFileInfo(m_zoneFile).path()};
    for (const QString &path : wanted) {
        // A file that was replaced is no longer watched.
        if (!watched.contains(path) && QFileInfo::exists(path))
            m_zoneWatch.addPath(path);
    }
}

std::unique_ptr<AlarmTimer> SystemAlarmClock::makeTimer()
{
    return std::make_unique<SystemTimer>();
}
