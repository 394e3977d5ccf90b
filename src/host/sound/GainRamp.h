// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

/// A gain that goes from one value to another without a step: along half a period of a cosine, so
/// that two ramps that cross over add up to one. A value type; not thread-safe.
class GainRamp {
public:
    explicit GainRamp(float gain = 0)
        : m_from(gain)
        , m_to(gain)
    {
    }

    void setTo(float gain) { *this = GainRamp(gain); }
    /// From the present gain to another one, within \a frames.
    void moveTo(float gain, std::size_t frames);
    /// Whether the gain stays where it is.
    bool isSteady() const { return m_at >= m_length; }
    float gain() const;
    /// Where it is or goes to.
    float target() const { return m_to; }
    /// Multiplies interleaved samples in place.
    void apply(float *samples, std::size_t frames, int channels);

private:
    float m_from;
    float m_to;
    std::size_t m_length = 0; ///< frames
    std::size_t m_at = 0;
};
