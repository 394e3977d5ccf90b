// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

/// Makes the sound of one play as loud as that of others: measures its loudness (EBU R 128, the
/// gated loudness of the last HistorySeconds) and moves its gain slowly, so that stations of
/// different loudness are heard alike and the dynamics within a piece of music stay.
///
/// Works in place and without delay: each frame that comes in goes out. Off at first; while it is
/// off, frames are neither touched nor looked at. While it is on, what goes out is finite and
/// within -1 .. 1, whatever comes in. Once it is off again, frames are what they were, faults
/// included.
///
/// Not thread-safe: one thread at a time, that which mixes. Allocates at setEnabled(true) and at
/// the first process() only. Copies of it cannot be made.
class LoudnessLeveler {
public:
    /// In LUFS. Between the -23 of broadcasting, which leaves small devices too quiet, and the -14
    /// to -9 of most internet stations: these are turned down, so their peaks stay as they are.
    static constexpr double Target = -18;
    /// In dB. No station is louder than about -6 LUFS, where all is clipped.
    static constexpr double MaxCut = 12;
    /// In dB. Brings speech of -27 LUFS, the quietest that is usual, to the target. More would lift
    /// hiss, and have the limiter work all the time.
    static constexpr double MaxBoost = 9;

    /// What is quieter than this, in LUFS over 400 ms, is a pause or a noise floor and no reason to
    /// change the gain.
    static constexpr double Pause = -45;
    /// How much sound counts. Longer than a sentence or a phrase, short enough to follow from an
    /// advertisement to the programme.
    static constexpr int HistorySeconds = 30;

    /// In dB per second. At the start of a play the gain has to be found soon, and nobody knows yet
    /// how loud the station is; later a change is not to be heard. Downwards quicker, because what
    /// is too loud bothers more.
    static constexpr double StartSpeed = 4;
    /// Downwards, in the half second before there is a measure: after a switch of station most
    /// begin louder than the one before was made.
    static constexpr double FirstSpeed = 60;
    static constexpr double SpeedUp = 0.5;
    static constexpr double SpeedDown = 1.5;
    /// For how long it is the start of a play; pauses do not count.
    static constexpr double StartSeconds = 10;
    /// The way back to the gain 1 after setEnabled(false).
    static constexpr double LeaveSpeed = 24;

    /// The limiter's: just below 1. It takes the gain back ahead of a peak, as far as process() was
    /// given what is ahead: a tenth of a second at once is plenty. A peak in the first frames of a
    /// call takes the gain back at once, along its own slope.
    static constexpr float Ceiling = 0.988F;

    /// \a rate in Hz; \a channels that are interleaved, one or two. One channel counts as heard
    /// from both loudspeakers.
    LoudnessLeveler(int rate, int channels);
    ~LoudnessLeveler();
    LoudnessLeveler(const LoudnessLeveler &) = delete;
    LoudnessLeveler &operator=(const LoudnessLeveler &) = delete;

    /// Without a click, also in the middle of a play: the gain moves from where it is. Measures
    /// from anew when it is enabled again.
    void setEnabled(bool enabled);
    bool isEnabled() const { return m_mode == Mode::On; }
    /// Whether process() does nothing: it is disabled, and the gain is back at 1.
    bool isIdle() const { return m_mode == Mode::Off; }

    /// \a count frames of 32-bit samples, in place. Any number; see Ceiling.
    void process(float *frames, std::size_t count);

private:
    class Meter;
    enum class Mode { Off, On, Leaving };

    void processPiece(float *frames, std::size_t count);
    void findPeaks(float *frames, std::size_t count);
    void measure(const float *frames, std::size_t count);
    void planGain(std::size_t count);
    void planLimit(std::size_t count);
    void apply(float *frames, std::size_t count) const;
    void applyAlongPeaks(float *frames, std::size_t count, float from, float to) const;
    double roughLoudness(const float *frames, std::size_t count) const;
    double speed() const;
    bool isLimiting() const;
    std::size_t sizeOfStep(std::size_t step, std::size_t count) const;

    const int m_rate;
    const std::size_t m_channels;
    const std::size_t m_piece; ///< frames that are processed at once, at most
    const std::size_t m_step; ///< frames of a millisecond
    Mode m_mode = Mode::Off;
    std::unique_ptr<Meter> m_meter;
    double m_target = 0; ///< the gain to reach, in dB
    double m_gain = 0; ///< in dB, without the limiter
    float m_limit = 1; ///< the limiter's factor
    double m_heard = 0; ///< seconds of sound since the start, StartSeconds at most
    std::size_t m_unmeasured = 0; ///< frames since the meter was read

    // Of the present piece, by steps: its peaks, and at the edges of the steps both gains, factors.
    std::vector<float> m_peaks;
    std::vector<float> m_gains;
    std::vector<float> m_limits;
};
