// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>

/// Takes the encoded audio that a StreamReader receives. Called on the reader's thread only. None
/// of the virtual functions waits for longer than MaxWait: a decoder that hangs, or an output that
/// is full, never holds the reader up beyond its own limits, which `goOn` stands for.
class StreamConsumer {
public:
    static constexpr std::chrono::milliseconds MaxWait {250};
    /// With so much ahead there is no hurry: what comes is gathered and handed on in larger pieces,
    /// so that threads and processor sleep in between.
    static constexpr std::chrono::milliseconds Plenty {2000};

    /// Whether waiting is still of use.
    using GoOn = std::function<bool()>;

    enum class Taken {
        All,
        None, ///< There is no space yet.
        Refused, ///< The audio cannot be used, or the play is over.
    };

    virtual ~StreamConsumer();

    /// What follows is the beginning of a stream or of a file; what came before is decoded to its
    /// end first.
    void startAudio(const GoOn &goOn);
    /// Waits for space as long as \a goOn says. Returns whether the audio was taken.
    bool feedAudio(const char *data, std::size_t size, const GoOn &goOn);
    /// Waits until everything is decoded, as long as \a goOn says.
    void finishAudio(const GoOn &goOn);

    /// What was taken since startAudio() is of no use: throws it away, so that isUsable() holds.
    virtual void forgetAudio() = 0;
    /// A new title on the air.
    virtual void takeTitle(const QString &title) = 0;
    /// What the server says of the bit rate, in bit/s.
    virtual void takeBitRate(int bitRate) = 0;

    /// False when what was taken since startAudio() turned out not to be audio.
    virtual bool isUsable() const = 0;
    /// Decoded since startAudio().
    virtual std::chrono::milliseconds decoded() const = 0;
    /// Decoded and not heard yet.
    virtual std::chrono::milliseconds ahead() const = 0;
    /// For how long nothing has been there to hear; zero while there is, and while the user paused.
    virtual std::chrono::milliseconds silence() const = 0;
    /// Whether anything was ever heard of this play.
    virtual bool wasHeard() const = 0;

protected:
    virtual void beginAudio() = 0;
    virtual Taken takeAudio(const char *data, std::size_t size) = 0;
    /// There is no more to come. Returns whether everything is decoded; may be called again.
    virtual bool endAudio() = 0;

private:
    bool m_begun = false; ///< and not finished
};
