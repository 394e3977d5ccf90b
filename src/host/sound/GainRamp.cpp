// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/GainRamp.h"

#include <algorithm>
#include <cmath>

void GainRamp::moveTo(float gain, std::size_t frames)
{
    m_from = this->gain();
    m_to = gain;
    m_length = frames;
    m_at = 0;
}

float GainRamp::gain() const
{
    if (isSteady())
        return m_to;
    const double part = static_cast<double>(m_at) / static_cast<double>(m_length);
    return m_from + (m_to - m_from) * static_cast<float>((1 - std::cos(M_PI * part)) / 2);
}

void GainRamp::apply(float *samples, std::size_t frames, int channels)
{
    const auto width = static_cast<std::size_t>(channels);
    std::size_t at = 0;
    for (; at < frames && !isSteady(); ++at, ++m_at) {
        const float now = gain();
        for (std::size_t channel = 0; channel < width; ++channel)
            samples[at * width + channel] *= now;
    }
    if (m_to == 1)
        return;
    std::for_each(samples + at * width, samples + frames * width,
        [gain = m_to](float &sample) { sample *= gain; });
}
