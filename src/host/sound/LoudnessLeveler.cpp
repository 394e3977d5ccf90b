// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/LoudnessLeveler.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

/// A sample beyond is a decoder's fault, not a peak.
constexpr float MaxSample = 8;

/// In LU: by how much a rough measure may be too high. Better too loud for a second than too quiet.
constexpr double RoughMargin = 2;

constexpr int StepsPerSecond = 1000;
constexpr int PiecesPerSecond = 10;
/// Often enough that each moment counts in one of the meter's 400 ms.
constexpr double ReadInterval = 0.25;

/// The meter costs more than all else, so it is given no more frames per second than are needed,
/// but at least this many.
constexpr int MeterRate = 22050;

/// The limiter's: by which factor it falls, or rises, within a step: 2 dB, and 20 dB per second.
constexpr float Attack = 1.2589F;
constexpr float Release = 1.0023F;

float factorOf(double decibels)
{
    return static_cast<float>(std::pow(10.0, decibels / 20));
}

/// Silence for what is no sample of a sound; NaN passes no comparison.
float cleaned(float sample)
{
    return std::fabs(sample) <= MaxSample ? sample : 0;
}

/// How many frames there are to each that is measured.
std::size_t thinningOf(int rate)
{
    int thinning = 1;
    while (rate % (thinning * 2) == 0 && rate / (thinning * 2) >= MeterRate)
        thinning *= 2;
    return static_cast<std::size_t>(thinning);
}

} // namespace

/// libebur128's state. What is too quiet for anything (below -70 LUFS) it leaves out of its
/// history, and out of a measure what is 10 LU below the rest.
///
/// It is given every second frame of most stations, without a filter before: that changes where in
/// the spectrum a sound is, but not its energy, and above 2 kHz the measure weighs all alike. White
/// noise is measured 0.3 LU too low thereby, all else less.
class LoudnessLeveler::Meter {
public:
    Meter(int rate, std::size_t channels)
        : m_channels(channels)
        , m_thinning(thinningOf(rate))
        , m_state(ebur128_init(static_cast<unsigned>(channels),
              static_cast<unsigned long>(rate) / m_thinning, EBUR128_MODE_I))
    {
        if (!m_state)
            return;
        ebur128_set_max_history(m_state, LoudnessLeveler::HistorySeconds * 1000UL);
        if (channels == 1)
            ebur128_set_channel(m_state, 0, EBUR128_DUAL_MONO);
    }
    ~Meter()
    {
        if (m_state)
            ebur128_destroy(&m_state);
    }
    Meter(const Meter &) = delete;
    Meter &operator=(const Meter &) = delete;

    void add(const float *frames, std::size_t count)
    {
        if (!m_state)
            return;
        m_thinned.clear();
        for (; m_next < count; m_next += m_thinning) {
            const float *const frame = frames + m_next * m_channels;
            m_thinned.insert(m_thinned.end(), frame, frame + m_channels);
        }
        m_next -= count;
        ebur128_add_frames_float(m_state, m_thinned.data(), m_thinned.size() / m_channels);
    }
    /// Nothing during a pause.
    std::optional<double> loudness() const
    {
        double momentary = 0;
        double gated = 0;
        if (!m_state || ebur128_loudness_momentary(m_state, &momentary) != EBUR128_SUCCESS
            || momentary < LoudnessLeveler::Pause
            || ebur128_loudness_global(m_state, &gated) != EBUR128_SUCCESS || !std::isfinite(gated))
            return {};
        return gated;
    }

private:
    const std::size_t m_channels;
    const std::size_t m_thinning;
    ebur128_state *m_state; ///< null without memory
    std::size_t m_next = 0; ///< the frame that is measured next
    std::vector<float> m_thinned;
};

LoudnessLeveler::LoudnessLeveler(int rate, int channels)
    : m_rate(std::max(rate, 1))
    , m_channels(static_cast<std::size_t>(std::max(channels, 1)))
    , m_piece(static_cast<std::size_t>(std::max(m_rate / PiecesPerSecond, 1)))
    , m_step(static_cast<std::size_t>(std::max(m_rate / StepsPerSecond, 1)))
{
}

LoudnessLeveler::~LoudnessLeveler() = default;

void LoudnessLeveler::setEnabled(bool enabled)
{
    if (enabled == isEnabled())
        return;
    if (!enabled) {
        m_mode = Mode::Leaving;
        m_meter.reset();
        return;
    }
    m_mode = Mode::On;
    m_meter = std::make_unique<Meter>(m_rate, m_channels);
    m_target = m_gain;
    m_heard = 0;
    m_unmeasured = 0;
}

void LoudnessLeveler::process(float *frames, std::size_t count)
{
    while (count > 0 && !isIdle()) {
        const std::size_t piece = std::min(count, m_piece);
        processPiece(frames, piece);
        frames += piece * m_channels;
        count -= piece;
    }
}

void LoudnessLeveler::processPiece(float *frames, std::size_t count)
{
    findPeaks(frames, count);
    if (m_mode == Mode::On)
        measure(frames, count);
    else
        m_target = 0;
    planGain(count);
    planLimit(count);
    apply(frames, count);
    m_limit = m_limits.back();
    if (m_mode == Mode::Leaving && m_gain == 0 && m_limit >= 1)
        m_mode = Mode::Off;
}

std::size_t LoudnessLeveler::sizeOfStep(std::size_t step, std::size_t count) const
{
    return std::min(m_step, count - step * m_step);
}

/// Of each step, once what is no sample of a sound was replaced.
void LoudnessLeveler::findPeaks(float *frames, std::size_t count)
{
    m_peaks.resize((count + m_step - 1) / m_step);
    for (std::size_t step = 0; step < m_peaks.size(); ++step) {
        const std::size_t samples = sizeOfStep(step, count) * m_channels;
        float peak = 0;
        for (std::size_t i = 0; i < samples; ++i) {
            frames[i] = cleaned(frames[i]);
            peak = std::max(peak, std::fabs(frames[i]));
        }
        m_peaks[step] = peak;
        frames += samples;
    }
}

/// In LUFS, without the weighting of frequencies.
double LoudnessLeveler::roughLoudness(const float *frames, std::size_t count) const
{
    double energy = 0;
    for (std::size_t i = 0; i < count * m_channels; ++i)
        energy += static_cast<double>(frames[i]) * static_cast<double>(frames[i]);
    const double loudspeakers = m_channels == 1 ? 2 : 1;
    return 10 * std::log10(energy * loudspeakers / static_cast<double>(count)) - RoughMargin;
}

void LoudnessLeveler::measure(const float *frames, std::size_t count)
{
    if (m_heard == 0) {
        const double rough = Target - roughLoudness(frames, count);
        m_target = std::min(m_gain, std::clamp(rough, -MaxCut, 0.0));
    }
    m_meter->add(frames, count);
    m_unmeasured += count;
    const double seconds = static_cast<double>(m_unmeasured) / m_rate;
    if (seconds < ReadInterval)
        return;
    m_unmeasured = 0;
    if (const auto loudness = m_meter->loudness()) {
        m_target = std::clamp(Target - *loudness, -MaxCut, MaxBoost);
        m_heard = std::min(m_heard + seconds, StartSeconds);
    }
}

double LoudnessLeveler::speed() const
{
    if (m_mode == Mode::Leaving)
        return LeaveSpeed;
    if (m_heard == 0)
        return FirstSpeed;
    if (m_heard < StartSeconds)
        return StartSpeed;
    return m_target > m_gain ? SpeedUp : SpeedDown;
}

/// The slow gain at the edges of the steps.
void LoudnessLeveler::planGain(std::size_t count)
{
    m_gains.resize(m_peaks.size() + 1);
    m_gains[0] = factorOf(m_gain);
    const double perFrame = speed() / m_rate;
    for (std::size_t step = 0; step < m_peaks.size(); ++step) {
        const double most = perFrame * static_cast<double>(sizeOfStep(step, count));
        const double change = std::clamp(m_target - m_gain, -most, most);
        m_gain += change;
        m_gains[step + 1] = change == 0 ? m_gains[step] : factorOf(m_gain);
    }
}

/// On the way to Mode::Off the gain comes back to 1 first; from then on the peaks are the sender's.
bool LoudnessLeveler::isLimiting() const
{
    return m_mode == Mode::On || m_gains[0] != 1;
}

/// The limiter's factor at the edges of the steps: no higher than the peaks on both sides allow,
/// lowered ahead of them, and let go slowly behind them. The first one is what it is, and may be
/// too high: see apply().
void LoudnessLeveler::planLimit(std::size_t count)
{
    const std::size_t steps = m_peaks.size();
    m_limits.assign(steps + 1, 1);
    for (std::size_t step = 0; isLimiting() && step < steps; ++step) {
        const float loudest = m_peaks[step] * std::max(m_gains[step], m_gains[step + 1]);
        if (loudest <= Ceiling)
            continue;
        m_limits[step] = std::min(m_limits[step], Ceiling / loudest);
        m_limits[step + 1] = std::min(m_limits[step + 1], Ceiling / loudest);
    }
    for (std::size_t edge = steps - 1; edge > 0; --edge)
        m_limits[edge] = std::min(m_limits[edge], m_limits[edge + 1] * Attack);
    m_limits[0] = m_limit;
    for (std::size_t edge = 1; edge < steps; ++edge)
        m_limits[edge] = std::min(m_limits[edge], m_limits[edge - 1] * Release);
    // The last step may be shorter.
    const float part
        = static_cast<float>(sizeOfStep(steps - 1, count)) / static_cast<float>(m_step);
    m_limits[steps] = std::min(m_limits[steps], m_limits[steps - 1] * (1 + (Release - 1) * part));
}

void LoudnessLeveler::apply(float *frames, std::size_t count) const
{
    for (std::size_t step = 0; step < m_peaks.size(); ++step) {
        const std::size_t size = sizeOfStep(step, count);
        const float from = m_gains[step] * m_limits[step];
        const float to = m_gains[step + 1] * m_limits[step + 1];
        if (step == 0 && isLimiting() && m_peaks[0] * from > Ceiling) {
            applyAlongPeaks(frames, size, from, to);
        } else {
            const float slope = (to - from) / static_cast<float>(size);
            for (std::size_t frame = 0; frame < size; ++frame) {
                const float gain = from + slope * static_cast<float>(frame + 1);
                for (std::size_t channel = 0; channel < m_channels; ++channel)
                    frames[frame * m_channels + channel] *= gain;
            }
        }
        frames += size * m_channels;
    }
}

/// For a peak of which nothing was known before: the gain is taken back no sooner and no further
/// than each frame needs, so that the sound runs along the ceiling while it rises, without a jump.
void LoudnessLeveler::applyAlongPeaks(float *frames, std::size_t count, float from, float to) const
{
    const float slope = (to - from) / static_cast<float>(count);
    float most = from;
    for (std::size_t frame = 0; frame < count; ++frame) {
        float *const samples = frames + frame * m_channels;
        float loudest = 0;
        for (std::size_t channel = 0; channel < m_channels; ++channel)
            loudest = std::max(loudest, std::fabs(samples[channel]));
        if (loudest * most > Ceiling)
            most = Ceiling / loudest;
        const float gain = std::min(from + slope * static_cast<float>(frame + 1), most);
        for (std::size_t channel = 0; channel < m_channels; ++channel)
            samples[channel] *= gain;
    }
}
