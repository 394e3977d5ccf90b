// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SoundMixer.h"

#include "host/sound/SoundDevice.h"

#include <algorithm>
#include <cmath>
#include <thread>

namespace {

using Milliseconds = std::chrono::milliseconds;

/// How long before its end a voice is given up that has no more audio.
constexpr Milliseconds Notice {50};

GstClockTime toGst(Milliseconds time)
{
    return static_cast<GstClockTime>(time.count()) * GST_MSECOND;
}

} // namespace

float SoundMixer::Fade::gain() const
{
    double factor = to;
    const auto passed = std::chrono::steady_clock::now() - begin;
    if (passed < time) {
        const double part
            = std::chrono::duration<double>(passed) / std::chrono::duration<double>(time);
        factor = from + (to - from) * part;
    }
    return static_cast<float>(factor * factor * factor);
}

SoundMixer::SoundMixer() = default;

SoundMixer::~SoundMixer() = default;

SoundMixer::Voice SoundMixer::add(SoundVoice::Tell tell)
{
    const VeskMutexLock lock(m_mutex);
    auto voice = std::make_shared<SoundVoice>(++m_lastNumber, std::move(tell));
    voice->setEven(m_even);
    m_voices.push_back(voice);
    return voice;
}

void SoundMixer::remove(const Voice &voice)
{
    {
        const VeskMutexLock lock(m_mutex);
        holdLocked(voice);
        voice->gone = true;
        voice->clear();
        m_voices.erase(std::remove(m_voices.begin(), m_voices.end(), voice), m_voices.end());
    }
    m_changed.notify_all();
}

bool SoundMixer::isEmpty() const
{
    const VeskMutexLock lock(m_mutex);
    return m_voices.empty();
}

bool SoundMixer::isOpen(const SoundVoice &voice) const
{
    return !voice.gone && !voice.refusing && !voice.broken;
}

SoundMixer::Written SoundMixer::write(SoundVoice &voice, const AudioFormat &format,
    const char *samples, std::size_t size, Milliseconds most,
    std::chrono::steady_clock::time_point deadline)
{
    letDeviceIn();
    VeskMutexLock lock(m_mutex);
    // Playback makes space without notifying m_changed, so an output that is full costs the whole
    // wait. Only a closed or refusing output ends it early.
    const auto isFull = [&]() VESK_REQUIRES(m_mutex) {
        // A voice that is held takes no more, though what was on its way is being heard.
        const GstClockTime way = voice.wanted ? onItsWayLocked(voice) : voice.held;
        return voice.waiting() + way > toGst(most);
    };
    while (isOpen(voice) && isFull() && lock.waitUntil(m_changed, deadline)) { }
    if (!isOpen(voice) || (voice.format.isKnown() && format != voice.format))
        return Written::Refused;
    if (isFull())
        return Written::None;
    voice.append(format, samples, size);
    if (m_current.get() == &voice)
        feedLocked();
    return Written::All;
}

void SoundMixer::finish(SoundVoice &voice)
{
    const VeskMutexLock lock(m_mutex);
    voice.finished = true;
    if (m_current.get() == &voice)
        feedLocked();
}

void SoundMixer::refuse(SoundVoice &voice, bool refuse)
{
    {
        const VeskMutexLock lock(m_mutex);
        voice.refusing = refuse;
    }
    m_changed.notify_all();
}

void SoundMixer::flush(const Voice &voice)
{
    {
        const VeskMutexLock lock(m_mutex);
        if (m_current == voice) {
            holdLocked(voice);
            voice->tell(SoundVoice::Event::RanDry, {});
        }
        voice->clear();
        voice->held = 0;
        voice->finished = false;
    }
    m_changed.notify_all();
}

AudioFormat SoundMixer::format(const SoundVoice &voice) const
{
    const VeskMutexLock lock(m_mutex);
    return voice.format;
}

Milliseconds SoundMixer::ahead(const SoundVoice &voice) const
{
    const VeskMutexLock lock(m_mutex);
    return Milliseconds((voice.waiting() + onItsWayLocked(voice)) / GST_MSECOND);
}

Milliseconds SoundMixer::onItsWay(const SoundVoice &voice) const
{
    const VeskMutexLock lock(m_mutex);
    return Milliseconds(onItsWayLocked(voice) / GST_MSECOND);
}

GstClockTime SoundMixer::onItsWayLocked(const SoundVoice &voice) const
{
    if (!m_device || voice.end == 0)
        return 0;
    const GstClockTime reached = m_device->now();
    return voice.end > reached ? voice.end - reached : 0;
}

void SoundMixer::want(SoundVoice &voice)
{
    const VeskMutexLock lock(m_mutex);
    voice.wanted = true;
}

bool SoundMixer::isWanted(const SoundVoice &voice) const
{
    const VeskMutexLock lock(m_mutex);
    return voice.wanted && isOpen(voice) && voice.number >= m_lastBegun;
}

bool SoundMixer::isQuiet() const
{
    const VeskMutexLock lock(m_mutex);
    return !m_current;
}

SoundMixer::Voice SoundMixer::lastBegun() const
{
    const VeskMutexLock lock(m_mutex);
    const auto found = std::find_if(m_voices.begin(), m_voices.end(),
        [number = m_lastBegun](const Voice &voice) { return voice->number == number; });
    return found == m_voices.end() ? nullptr : *found;
}

bool SoundMixer::isPlaying() const
{
    return m_device && m_device->isRunning() && m_current;
}

std::size_t SoundMixer::framesOf(Milliseconds time) const
{
    return static_cast<std::size_t>(m_format.rate * time.count() / 1000);
}

void SoundMixer::begin(const Voice &voice)
{
    const VeskMutexLock lock(m_mutex);
    if (!voice->wanted || voice->gone || voice->broken || voice->number < m_lastBegun || !m_device
        || m_current == voice)
        return;
    m_lastBegun = voice->number;
    const Voice former = m_current;
    // Another format would have the device be opened anew: only while nothing sounds.
    if (!former && m_format != voice->format) {
        m_format = voice->format;
        m_device->setFormat(m_format);
    }
    if (!former) {
        m_gain.setTo(m_gain.target());
        m_faded = m_fade.gain();
    }
    voice->rise(framesOf(Ramp));
    m_current = voice;
    m_scarce = false;
    if (former)
        crossOver(former, voice);
    voice->tell(SoundVoice::Event::Sounding, {});
    feedLocked();
}

/// How many frames a voice has to fall silent in.
std::size_t SoundMixer::fallOf(SoundVoice &voice) const
{
    return std::min(framesOf(Ramp), voice.available(m_format));
}

void SoundMixer::crossOver(const Voice &from, const Voice &to)
{
    from->wanted = false;
    const std::size_t frames = std::min(fallOf(*from), to->available(m_format));
    if (!isPlaying() || frames == 0)
        return;
    from->fall(frames);
    push({from.get(), to.get()}, frames);
}

void SoundMixer::hold(const Voice &voice)
{
    const VeskMutexLock lock(m_mutex);
    holdLocked(voice);
}

void SoundMixer::holdLocked(const Voice &voice)
{
    voice->wanted = false;
    if (m_current != voice)
        return;
    fallSilent(*voice);
    m_current.reset();
    m_due.notify_all();
    m_needs.quiet();
}

void SoundMixer::fallSilent(SoundVoice &voice)
{
    const std::size_t frames = fallOf(voice);
    if (isPlaying() && frames > 0) {
        voice.fall(frames);
        push({&voice}, frames);
    }
    voice.held = onItsWayLocked(voice);
}

/// A voice that is written to without a pause would keep the lock from the device's own thread,
/// which cannot play meanwhile.
void SoundMixer::letDeviceIn() const
{
    constexpr std::chrono::microseconds Step {50};
    constexpr int Most = 100;
    for (int i = 0; i < Most && m_arriving > 0; ++i)
        std::this_thread::sleep_for(Step);
}

void SoundMixer::feed(const SoundDevice *device)
{
    ++m_arriving;
    VeskMutexLock lock(m_mutex);
    --m_arriving;
    if (m_device.get() != device)
        return;
    m_waiting = device;
    bool isTime = false;
    while (!isTime && m_device.get() == device && isPlaying() && m_device->isHungry()) {
        const std::chrono::nanoseconds left = device->remaining();
        isTime = !device->takesAll() || left.count() == 0
            || !lock.waitUntil(m_due, std::chrono::steady_clock::now() + left);
    }
    if (m_waiting == device)
        m_waiting = nullptr;
    feedLocked();
}

void SoundMixer::start()
{
    const VeskMutexLock lock(m_mutex);
    feedLocked();
}

/// The end of a ramp is kept back until it is certain that more follows: a voice that runs dry
/// falls silent along it.
void SoundMixer::feedLocked()
{
    // The thread that waits until the next piece is due may be kept from the lock by a voice that
    // is written to without a pause; whoever has it then feeds the device.
    const auto isDue = [this]() VESK_REQUIRES(m_mutex) {
        return m_waiting != m_device.get() || m_device->remaining().count() == 0;
    };
    while (isPlaying() && m_device->isHungry() && isDue()) {
        const std::size_t kept = m_current->finished ? 0 : framesOf(Ramp);
        const std::size_t there = m_current->available(m_format);
        const std::size_t frames = std::min(framesOf(Piece), there - std::min(there, kept));
        if (frames > 0) {
            m_scarce = false;
            push({m_current.get()}, frames);
        } else if (m_current->finished) {
            m_current->clear();
            m_current.reset();
            m_needs.quiet();
        } else {
            if (!m_scarce)
                m_needs.scarce();
            m_scarce = true;
            return;
        }
    }
}

std::optional<Milliseconds> SoundMixer::runDry()
{
    const VeskMutexLock lock(m_mutex);
    if (!m_scarce || !isPlaying())
        return {};
    const auto left = std::chrono::duration_cast<Milliseconds>(m_device->remaining());
    if (left > Notice)
        return left - Notice;
    const Voice voice = m_current;
    holdLocked(voice);
    voice->tell(SoundVoice::Event::RanDry, {});
    return {};
}

void SoundMixer::push(const std::vector<SoundVoice *> &voices, std::size_t frames)
{
    m_device->push(mix(voices, frames));
    for (SoundVoice *voice : voices)
        voice->end = m_device->end();
    m_due.notify_all();
}

GstBuffer *SoundMixer::mix(const std::vector<SoundVoice *> &voices, std::size_t frames)
{
    const float faded = m_fade.gain();
    const bool isFading = faded != 1 || m_faded != 1;
    const bool isAsItIs = m_gain.isSteady() && m_gain.target() == 1 && !isFading;
    if (voices.size() == 1 && isAsItIs && voices.front()->isPlain(m_format))
        return voices.front()->take(frames);
    const auto channels = static_cast<std::size_t>(m_format.channels);
    GstBuffer *buffer
        = gst_buffer_new_allocate(nullptr, frames * channels * sizeof(float), nullptr);
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_WRITE))
        return buffer;
    auto *sum = reinterpret_cast<float *>(map.data);
    std::fill_n(sum, frames * channels, 0.F);
    for (SoundVoice *voice : voices)
        voice->addTo(sum, frames, m_format);
    m_gain.apply(sum, frames, m_format.channels);
    if (isFading) {
        GainRamp ramp(m_faded);
        ramp.moveTo(faded, frames);
        ramp.apply(sum, frames, m_format.channels);
        m_faded = faded;
    }
    gst_buffer_unmap(buffer, &map);
    return buffer;
}

void SoundMixer::setDevice(std::shared_ptr<SoundDevice> device)
{
    const VeskMutexLock lock(m_mutex);
    const Voice voice = m_current;
    if (voice && m_device) {
        fallSilent(*voice);
        if (device)
            voice->rise(framesOf(Ramp));
        else
            m_current.reset();
    }
    for (const Voice &each : m_voices)
        each->end = 0;
    m_device = std::move(device);
    m_due.notify_all();
    m_scarce = false;
    m_format = {};
    if (m_device && voice) {
        m_format = voice->format;
        m_device->setFormat(m_format);
    }
}

void SoundMixer::fail(const TrString &problem)
{
    {
        const VeskMutexLock lock(m_mutex);
        m_current.reset();
        for (const Voice &voice : m_voices) {
            voice->broken = true;
            voice->tell(SoundVoice::Event::Failed, problem);
        }
    }
    m_changed.notify_all();
}

void SoundMixer::setGain(double gain)
{
    const VeskMutexLock lock(m_mutex);
    if (m_current)
        m_gain.moveTo(static_cast<float>(gain), framesOf(Ramp));
    else
        m_gain.setTo(static_cast<float>(gain));
}

void SoundMixer::fade(double from, double to, Milliseconds time)
{
    const VeskMutexLock lock(m_mutex);
    m_fade = {from, to, std::chrono::steady_clock::now(), time};
}

void SoundMixer::setEven(bool even)
{
    const VeskMutexLock lock(m_mutex);
    m_even = even;
    for (const Voice &voice : m_voices)
        voice->setEven(even);
}
