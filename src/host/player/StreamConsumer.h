// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>

/// Takes the encoded audio that a StreamReader receives. Called on the reader thread only. No
/// virtual function waits for longer than MaxWait; the public functions repeat them while `goOn`
/// returns true, so a decoder that hangs or a full output cannot block the reader beyond its own
/// limits.
class StreamConsumer {
public:
    static constexpr std::chrono::milliseconds MaxWait {250};
    /// With so much decoded audio buffered, data is passed on in larger batches, so that the
    /// threads wake up less often.
    static constexpr std::chrono::milliseconds Plenty {2000};

    /// Whether to go on waiting.
    using GoOn = std::function<bool()>;

    enum class Taken {
        All,
        None, ///< no space yet; try again
        Refused, ///< the audio cannot be decoded, or the play is over
    };

    virtual ~StreamConsumer();

    /// The bytes that follow begin a stream or file. Waits for the previous one to be decoded
    /// first.
    void startAudio(const GoOn &goOn);
    /// Waits for space while \a goOn returns true. Returns whether the audio was taken.
    bool feedAudio(const char *data, std::size_t size, const GoOn &goOn);
    /// Waits until everything is decoded, while \a goOn returns true.
    void finishAudio(const GoOn &goOn);

    /// Drops the undecodable bytes taken since startAudio(); isUsable() is true afterwards.
    virtual void forgetAudio() = 0;
    /// The stream's current title changed.
    virtual void takeTitle(const QString &title) = 0;
    /// The bit rate according to the server, in bit/s.
    virtual void takeBitRate(int bitRate) = 0;

    /// False once the bytes taken since startAudio() turned out not to be decodable.
    virtual bool isUsable() const = 0;
    /// Duration of the audio decoded since startAudio().
    virtual std::chrono::milliseconds decoded() const = 0;
    /// Duration of the audio that was decoded and not heard yet.
    virtual std::chrono::milliseconds ahead() const = 0;
    /// For how long there has been no sound; zero while there is, and while paused.
    virtual std::chrono::milliseconds silence() const = 0;
    /// Whether this play was ever audible.
    virtual bool wasHeard() const = 0;

protected:
    /// Starts a new decoder for the bytes that follow.
    virtual void beginAudio() = 0;
    /// Takes all of \a data or nothing.
    virtual Taken takeAudio(const char *data, std::size_t size) = 0;
    /// No more bytes follow. Returns whether everything is decoded; called again until then.
    virtual bool endAudio() = 0;

private:
    bool m_begun = false; ///< startAudio() was called, finishAudio() not yet
};
