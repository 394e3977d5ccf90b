// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/player/MediaHead.h"

#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>

/// Where audio belongs in its file.
struct AudioPlace {
    std::chrono::microseconds position {0}; ///< of the first sample to be heard
    std::chrono::microseconds skip {0}; ///< of the samples before it, which are not to be heard
};

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
    /// first. \a place: that of a file's; none for a station.
    void startAudio(const GoOn &goOn, const std::optional<AudioPlace> &place = {});
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
    /// The beginning of the file that plays, once that much of it has arrived.
    virtual void takeFile(const StreamFile &file);
    /// The duration of the file that plays, where its playlist says it.
    virtual void takeDuration(std::chrono::microseconds duration);

    /// Called at least twice a second while the reader waits for anything.
    virtual void look();

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
    /// Where these belong, right after beginAudio().
    virtual void placeAudio(const AudioPlace &place);
    /// Takes all of \a data or nothing.
    virtual Taken takeAudio(const char *data, std::size_t size) = 0;
    /// No more bytes follow. Returns whether everything is decoded; called again until then.
    virtual bool endAudio() = 0;

private:
    bool m_begun = false; ///< startAudio() was called, finishAudio() not yet
};
