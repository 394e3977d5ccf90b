// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/DeviceKeeper.h"

#include "api/core/ThreadCheck.h"
#include "api/core/vesk.h"
#include "host/sound/SoundDevice.h"
#include "media/GstHandles.h"

#include <cmath>
#include <thread>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// Rounded up, so that a timer is not early.
Milliseconds remaining(const SoundDevice &device)
{
    return std::chrono::ceil<Milliseconds>(device.remaining());
}

/// Waits until a device has played what it was given, which ends in a ramp. A file need not: it is
/// completed with all of it.
void playOut(const SoundDevice &device)
{
    constexpr Milliseconds Longest {500};
    if (device.isRunning() && !device.isBroken() && !device.isFile())
        std::this_thread::sleep_for(std::min(remaining(device), Longest));
}

/// A device's clock is not that of its loudspeaker.
constexpr Milliseconds Margin {20};

/// For how long the device may report what was set before.
constexpr Milliseconds VolumeEcho {1000};

} // namespace

/// Hands on what a device has to say, as long as there is a keeper. Any thread.
class DeviceKeeper::Mailbox {
public:
    explicit Mailbox(DeviceKeeper *keeper)
        : m_keeper(keeper)
    {
    }
    void close()
    {
        const VeskMutexLock lock(m_mutex);
        m_keeper = nullptr;
    }
    template <class Act>
    void post(Act act)
    {
        const VeskMutexLock lock(m_mutex);
        if (DeviceKeeper *keeper = m_keeper) {
            QMetaObject::invokeMethod(
                keeper, [keeper, act = std::move(act)] { act(*keeper); }, Qt::QueuedConnection);
        }
    }

private:
    VeskMutex m_mutex;
    DeviceKeeper *m_keeper VESK_GUARDED_BY(m_mutex);
};

struct DeviceKeeper::Opening {
    AudioOutputSpec spec;
    std::shared_ptr<SoundDevice> device;
    int number = 0;
    SoundOutput::Chosen done;
};

DeviceKeeper::DeviceKeeper(
    std::shared_ptr<SoundMixer> mixer, AudioOutputSpec spec, SoundOutput::MakeSink makeSink)
    : m_mixer(std::move(mixer))
    , m_makeSink(std::move(makeSink))
    , m_mailbox(std::make_shared<Mailbox>(this))
    , m_spec(std::move(spec))
    , m_settleLater(this)
    , m_releaseLater(this)
    , m_lookLater(this)
    , m_followLater(this)
{
    m_mixer->setNeeds(
        {[mailbox = m_mailbox] { mailbox->post([](DeviceKeeper &keeper) { keeper.settle(); }); },
            [mailbox = m_mailbox] {
                mailbox->post([](DeviceKeeper &keeper) { keeper.watchSupply(); });
            }});
    for (QTimer *timer : {&m_settleLater, &m_releaseLater, &m_lookLater, &m_followLater})
        timer->setSingleShot(true);
    m_lookLater.setTimerType(Qt::PreciseTimer);
    connect(&m_settleLater, &QTimer::timeout, this, &DeviceKeeper::settle);
    connect(&m_releaseLater, &QTimer::timeout, this, &DeviceKeeper::release);
    connect(&m_lookLater, &QTimer::timeout, this, &DeviceKeeper::watchSupply);
    connect(&m_followLater, &QTimer::timeout, this, &DeviceKeeper::followVolume);
}

DeviceKeeper::~DeviceKeeper()
{
    m_mailbox->close();
}

Result<std::shared_ptr<SoundDevice>, TrString> DeviceKeeper::make(
    const AudioOutputSpec &spec, int number)
{
    startGStreamer();
    const Result<SoundSink, TrString> sink = m_makeSink(spec);
    if (!sink)
        return failure(sink.error());
    SoundDevice::Callbacks callbacks;
    callbacks.hungry = [mixer = m_mixer](const SoundDevice *device) { mixer->feed(device); };
    callbacks.failed = [mailbox = m_mailbox, number](const TrString &problem) {
        mailbox->post(
            [number, problem](DeviceKeeper &keeper) { keeper.onFailed(number, problem); });
    };
    callbacks.healthChanged = [mailbox = m_mailbox, number](const TrString &problem) {
        mailbox->post([number, problem](DeviceKeeper &keeper) {
            if (number == keeper.m_deviceNumber)
                Q_EMIT keeper.healthChanged(problem);
        });
    };
    callbacks.volumeChanged = [mailbox = m_mailbox] {
        // What was set here before is reported too, and late.
        mailbox->post([](DeviceKeeper &keeper) { keeper.m_followLater.start(VolumeEcho); });
    };
    return std::make_shared<SoundDevice>(*sink, std::move(callbacks));
}

void DeviceKeeper::open()
{
    const int number = ++m_lastNumber;
    const auto device = make(m_spec, number);
    if (!device) {
        m_mixer->fail(device.error());
        return;
    }
    m_deviceNumber = number;
    m_device = *device;
    m_device->open();
    // If it is broken, onFailed() is on its way.
    if (!m_device->isBroken())
        use(m_device);
}

void DeviceKeeper::use(std::shared_ptr<SoundDevice> device)
{
    m_device = std::move(device);
    applyVolume();
    m_mixer->setDevice(m_device);
}

void DeviceKeeper::closeDevice()
{
    if (!m_device)
        return;
    m_mixer->setDevice(nullptr);
    playOut(*m_device);
    m_device->close();
    m_device.reset();
    m_owner.reset();
}

void DeviceKeeper::prepare(const SoundMixer::Voice &voice)
{
    VESK_ASSERT_OWN_THREAD();
    m_releaseLater.stop();
    if (m_device)
        return;
    m_owner = voice;
    open();
}

void DeviceKeeper::begin(const SoundMixer::Voice &voice)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_mixer->isWanted(*voice))
        return;
    if (m_device && m_device->isFile() && m_owner != voice)
        closeDevice();
    if (!m_device) {
        m_owner = voice;
        open();
    }
    if (!m_device || m_device->isBroken())
        return;
    m_settleLater.stop();
    m_releaseLater.stop();
    m_mixer->begin(voice);
    if (m_device->isRunning())
        return;
    m_device->setRunning(true);
    m_mixer->start();
}

void DeviceKeeper::leave(const SoundMixer::Voice &voice)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_device && m_device->isFile() && m_owner == voice)
        closeDevice();
    settle();
}

void DeviceKeeper::settle()
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_device || !m_mixer->isQuiet())
        return;
    if (m_device->isRunning()) {
        if (const Milliseconds left = remaining(*m_device); left.count() > 0) {
            m_settleLater.start(left + Margin);
            return;
        }
        m_device->setRunning(false);
    }
    if (m_mixer->isEmpty())
        m_releaseLater.start(SoundOutput::Linger);
}

void DeviceKeeper::watchSupply()
{
    VESK_ASSERT_OWN_THREAD();
    if (const auto wait = m_mixer->runDry())
        m_lookLater.start(*wait);
}

void DeviceKeeper::setVolume(int volume, bool muted)
{
    VESK_ASSERT_OWN_THREAD();
    m_volume = volume;
    m_muted = muted;
    m_followLater.stop();
    applyVolume();
}

/// The volume is the device's if it has one, the mixer's otherwise. Mute is both, so that it comes
/// along a ramp.
void DeviceKeeper::applyVolume()
{
    const double volume = m_volume / 100.0;
    const bool isDevices = m_device && m_device->hasVolume();
    if (isDevices)
        m_device->setVolume(volume, m_muted);
    if (m_muted)
        m_mixer->setGain(0);
    else
        m_mixer->setGain(isDevices ? 1 : std::pow(volume, 3));
}

void DeviceKeeper::followVolume()
{
    if (!m_device || !m_device->hasVolume())
        return;
    const int volume = std::clamp(static_cast<int>(std::lround(m_device->volume() * 100)), 0, 100);
    const bool muted = m_device->isMuted();
    if (volume == m_volume && muted == m_muted)
        return;
    m_volume = volume;
    m_muted = muted;
    m_mixer->setGain(muted ? 0 : 1);
    Q_EMIT volumeFollowed(volume, muted);
}

void DeviceKeeper::onFailed(int number, const TrString &problem)
{
    if (m_opening && m_opening->number == number)
        return; // onOpened() tells it
    if (number != m_deviceNumber || !m_device)
        return;
    m_mixer->fail(problem);
    closeDevice();
    Q_EMIT failed(problem);
}

/// Opens the other output on a thread of its own, as nobody knows how long that takes; the present
/// one goes on.
void DeviceKeeper::setOutput(const AudioOutputSpec &spec, const SoundOutput::Chosen &done)
{
    VESK_ASSERT_OWN_THREAD();
    if (m_opening)
        give(m_opening,
            failure(TrString("Player",
                QT_TRANSLATE_NOOP("Player", "Another output was chosen in the meantime."))));
    if (!m_device) {
        m_spec = spec;
        Q_EMIT outputChanged(spec);
        return done({});
    }
    const int number = ++m_lastNumber;
    auto device = make(spec, number);
    if (!device)
        return done(failure(device.error()));
    const auto opening
        = std::make_shared<Opening>(Opening {spec, std::move(*device), number, done});
    m_opening = opening;
    std::thread([opening, mailbox = m_mailbox] {
        opening->device->open();
        mailbox->post([opening](DeviceKeeper &keeper) { keeper.onOpened(opening); });
    }).detach();
    QTimer::singleShot(OpenTime, this, [this, waiting = std::weak_ptr<Opening>(opening)] {
        give(waiting.lock(),
            failure(TrString(
                "Player", QT_TRANSLATE_NOOP("Player", "The sound output does not answer."))));
    });
}

/// Tells the result, once.
void DeviceKeeper::give(
    const std::shared_ptr<Opening> &opening, const Result<void, TrString> &result)
{
    if (!opening || m_opening != opening)
        return;
    m_opening.reset();
    opening->done(result);
}

void DeviceKeeper::onOpened(const std::shared_ptr<Opening> &opening)
{
    if (m_opening != opening)
        return;
    if (opening->device->isBroken()) {
        return give(opening,
            failure(TrString(
                "Player", QT_TRANSLATE_NOOP("Player", "The sound output does not work."))));
    }
    const std::shared_ptr<SoundDevice> former = std::exchange(m_device, nullptr);
    const bool isRunning = former && former->isRunning() && !m_mixer->isQuiet();
    m_spec = opening->spec;
    m_deviceNumber = opening->number;
    m_owner = m_mixer->lastBegun();
    use(opening->device);
    if (isRunning) {
        m_device->setRunning(true);
        m_mixer->start();
    }
    Q_EMIT outputChanged(m_spec);
    give(opening, {});
    if (former) {
        // What it was given is heard to its end.
        QTimer::singleShot(remaining(*former), this, [former] { former->close(); });
    }
    settle();
}

void DeviceKeeper::release()
{
    VESK_ASSERT_OWN_THREAD();
    m_settleLater.stop();
    m_releaseLater.stop();
    closeDevice();
}
