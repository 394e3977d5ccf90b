// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SoundOutput.h"

#include "api/core/vesk.h"
#include "host/sound/DeviceKeeper.h"
#include "host/sound/SoundMixer.h"

#include <condition_variable>

namespace {

/// What one thread waits for and another one has done. Any thread.
class Milestone {
public:
    void reach()
    {
        {
            const VeskMutexLock lock(m_mutex);
            m_reached = true;
        }
        m_changed.notify_all();
    }
    bool wait(std::chrono::milliseconds time)
    {
        const auto deadline = std::chrono::steady_clock::now() + time;
        VeskMutexLock lock(m_mutex);
        while (!m_reached && lock.waitUntil(m_changed, deadline)) { }
        return m_reached;
    }

private:
    VeskMutex m_mutex;
    std::condition_variable m_changed;
    bool m_reached VESK_GUARDED_BY(m_mutex) = false;
};

} // namespace

SoundOutput::SoundOutput(const AudioOutputSpec &spec, MakeSink makeSink)
    : m_mixer(std::make_shared<SoundMixer>())
    , m_keeper(new DeviceKeeper(m_mixer, spec, std::move(makeSink)))
    , m_spec(spec)
{
    m_keeper->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_keeper, &QObject::deleteLater);
    connect(
        m_keeper, &DeviceKeeper::volumeFollowed, this,
        [this](int volume, bool muted) {
            {
                const VeskMutexLock lock(m_mutex);
                m_volume = volume;
                m_muted = muted;
            }
            Q_EMIT volumeFollowed(volume, muted);
        },
        Qt::DirectConnection);
    connect(
        m_keeper, &DeviceKeeper::outputChanged, this,
        [this](const AudioOutputSpec &present) {
            {
                const VeskMutexLock lock(m_mutex);
                m_spec = present;
            }
            Q_EMIT outputChanged();
        },
        Qt::DirectConnection);
    connect(m_keeper, &DeviceKeeper::failed, this, &SoundOutput::failed, Qt::DirectConnection);
    connect(m_keeper, &DeviceKeeper::healthChanged, this, &SoundOutput::healthChanged,
        Qt::DirectConnection);
}

SoundOutput::~SoundOutput()
{
    if (!m_isStarted) {
        delete m_keeper;
        return;
    }
    post([](DeviceKeeper &keeper) { keeper.release(); });
    post([](DeviceKeeper &) { QThread::currentThread()->quit(); });
    m_thread.wait();
}

/// Queues a call of \a act with the keeper on the sound thread, which is started for the first one.
template <class Act>
void SoundOutput::post(Act act)
{
    std::call_once(m_started, [this] {
        m_isStarted = true;
        m_thread.start();
        QMetaObject::invokeMethod(
            m_keeper,
            [this] {
                veskSetThreadName(QStringLiteral("Sound"));
                VeskMutexLock lock(m_mutex);
                const int volume = m_volume;
                const bool muted = m_muted;
                lock.unlock();
                m_keeper->setVolume(volume, muted);
            },
            Qt::QueuedConnection);
    });
    QMetaObject::invokeMethod(
        m_keeper, [keeper = m_keeper, act = std::move(act)] { act(*keeper); },
        Qt::QueuedConnection);
}

/// The same; returns whether it was done within \a time.
template <class Act>
bool SoundOutput::postAndWait(Act act, std::chrono::milliseconds time)
{
    const auto done = std::make_shared<Milestone>();
    post([act = std::move(act), done](DeviceKeeper &keeper) {
        act(keeper);
        done->reach();
    });
    return done->wait(time);
}

std::shared_ptr<SoundVoice> SoundOutput::attach(SoundVoice::Tell tell)
{
    std::shared_ptr<SoundVoice> voice = m_mixer->add(std::move(tell));
    post([voice](DeviceKeeper &keeper) { keeper.prepare(voice); });
    return voice;
}

void SoundOutput::start(const std::shared_ptr<SoundVoice> &voice)
{
    m_mixer->want(*voice);
    post([voice](DeviceKeeper &keeper) { keeper.begin(voice); });
}

void SoundOutput::leave(const std::shared_ptr<SoundVoice> &voice)
{
    m_mixer->remove(voice);
    const auto act = [voice](DeviceKeeper &keeper) { keeper.leave(voice); };
    if (spec().kind == AudioOutputSpec::Wav)
        postAndWait(act, LeaveTime);
    else
        post(act);
}

AudioOutputSpec SoundOutput::spec() const
{
    const VeskMutexLock lock(m_mutex);
    return m_spec;
}

void SoundOutput::setOutput(const AudioOutputSpec &spec, Chosen done)
{
    post([spec, done = std::move(done)](DeviceKeeper &keeper) { keeper.setOutput(spec, done); });
}

void SoundOutput::setVolume(int volume, bool muted)
{
    {
        const VeskMutexLock lock(m_mutex);
        m_volume = volume;
        m_muted = muted;
    }
    if (m_isStarted)
        post([volume, muted](DeviceKeeper &keeper) { keeper.setVolume(volume, muted); });
}

void SoundOutput::fade(double from, double to, std::chrono::milliseconds time)
{
    m_mixer->fade(from, to, time);
}

void SoundOutput::setEven(bool even)
{
    m_mixer->setEven(even);
}

bool SoundOutput::close(std::chrono::milliseconds time)
{
    return !m_isStarted || postAndWait([](DeviceKeeper &keeper) { keeper.release(); }, time);
}
