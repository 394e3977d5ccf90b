// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SoundVoice.h"

#include "host/sound/LoudnessLeveler.h"

#include <algorithm>
#include <gst/audio/audio.h>
#include <gst/base/gstadapter.h>

namespace {

std::size_t frameSize(const AudioFormat &format)
{
    return sizeof(float) * static_cast<std::size_t>(format.channels);
}

GstAudioInfo infoOf(const AudioFormat &format)
{
    GstAudioInfo info;
    gst_audio_info_init(&info);
    gst_audio_info_set_format(&info, GST_AUDIO_FORMAT_F32, format.rate, format.channels, nullptr);
    return info;
}

} // namespace

void SoundVoice::ConverterFree::operator()(_GstAudioConverter *converter) const
{
    gst_audio_converter_free(converter);
}

SoundVoice::SoundVoice(int itsNumber, Tell itsTell)
    : number(itsNumber)
    , tell(std::move(itsTell))
    , m_waiting(gst_adapter_new())
{
}

SoundVoice::~SoundVoice() = default;

void SoundVoice::append(const AudioFormat &given, const char *samples, std::size_t size)
{
    if (!format.isKnown())
        format = given;
    gst_adapter_push(m_waiting.get(), gst_buffer_new_memdup(samples, size));
}

void SoundVoice::clear()
{
    gst_adapter_clear(m_waiting.get());
}

GstClockTime SoundVoice::waiting() const
{
    if (!format.isKnown())
        return 0;
    return gst_util_uint64_scale_int(
        gst_adapter_available(m_waiting.get()) / frameSize(format), GST_SECOND, format.rate);
}

std::size_t SoundVoice::available(const AudioFormat &mixed) const
{
    if (!format.isKnown())
        return 0;
    const std::size_t frames = gst_adapter_available(m_waiting.get()) / frameSize(format);
    return format.rate == mixed.rate ? frames
                                     : gst_util_uint64_scale_int(frames, mixed.rate, format.rate);
}

void SoundVoice::rise(std::size_t frames)
{
    m_ramp.setTo(0);
    m_ramp.moveTo(1, frames);
}

void SoundVoice::fall(std::size_t frames)
{
    m_ramp.moveTo(0, frames);
}

void SoundVoice::setEven(bool even)
{
    m_even = even;
    if (m_leveler)
        m_leveler->setEnabled(even);
}

bool SoundVoice::isPlain(const AudioFormat &mixed) const
{
    return format == mixed && !m_even && (!m_leveler || m_leveler->isIdle()) && m_ramp.isSteady()
        && m_ramp.target() == 1;
}

GstBuffer *SoundVoice::take(std::size_t frames)
{
    return gst_adapter_take_buffer(m_waiting.get(), frames * frameSize(format));
}

void SoundVoice::prepareConverter(const AudioFormat &mixed)
{
    if (m_converted == mixed)
        return;
    m_converted = mixed;
    m_converter.reset();
    if (format == mixed)
        return;
    GstAudioInfo from = infoOf(format);
    GstAudioInfo to = infoOf(mixed);
    m_converter.reset(gst_audio_converter_new(GST_AUDIO_CONVERTER_FLAG_NONE, &from, &to, nullptr));
}

/// How many frames of its own make so many of the mixed format. The converter's own answer leaves
/// out what its filter holds back.
std::size_t SoundVoice::neededFor(std::size_t frames) const
{
    if (!m_converter)
        return frames;
    std::size_t needed = gst_audio_converter_get_in_frames(m_converter.get(), frames);
    while (gst_audio_converter_get_out_frames(m_converter.get(), needed) < frames)
        ++needed;
    return needed;
}

void SoundVoice::addTo(float *sum, std::size_t frames, const AudioFormat &mixed)
{
    prepareConverter(mixed);
    const std::size_t needed = neededFor(frames);
    const std::size_t size = frameSize(format);
    const std::size_t there = std::min(needed, gst_adapter_available(m_waiting.get()) / size);
    m_taken.assign(needed * static_cast<std::size_t>(format.channels), 0);
    gst_adapter_copy(m_waiting.get(), m_taken.data(), 0, there * size);
    gst_adapter_flush(m_waiting.get(), there * size);
    if (m_even && !m_leveler) {
        m_leveler = std::make_unique<LoudnessLeveler>(format.rate, format.channels);
        m_leveler->setEnabled(true);
    }
    if (m_leveler)
        m_leveler->process(m_taken.data(), there);
    float *made = m_taken.data();
    const std::size_t samples = frames * static_cast<std::size_t>(mixed.channels);
    if (m_converter) {
        m_made.assign(samples, 0);
        made = m_made.data();
        gpointer in = m_taken.data();
        gpointer out = made;
        gst_audio_converter_samples(
            m_converter.get(), GST_AUDIO_CONVERTER_FLAG_NONE, &in, needed, &out, frames);
    }
    m_ramp.apply(made, frames, mixed.channels);
    std::transform(made, made + samples, sum, sum, [](float a, float b) { return a + b; });
}
