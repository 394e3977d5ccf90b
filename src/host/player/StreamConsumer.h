#pragma once

#include <QString>

#include <chrono>
#include <cstddef>

/// Takes the encoded audio that a StreamReader receives. Called on the reader's thread only.
class StreamConsumer {
public:
    virtual ~StreamConsumer();

    /// What comes now is the beginning of a stream or of a file.
    virtual void beginAudio() = 0;
    /// Waits while there is enough. Returns false when the audio cannot be used, and when the play
    /// is over.
    virtual bool takeAudio(const char *data, std::size_t size) = 0;
    /// That was all: returns when everything is decoded.
    virtual void endAudio() = 0;
    /// What was taken since beginAudio() is of no use: throws it away, so that isUsable() holds.
    virtual void forgetAudio() = 0;
    /// A new title on the air.
    virtual void takeTitle(const QString &title) = 0;
    /// What the server says of the bit rate, in bit/s.
    virtual void takeBitRate(int bitRate) = 0;

    /// False when what was taken since beginAudio() turned out not to be audio.
    virtual bool isUsable() const = 0;
    /// Decoded since beginAudio().
    virtual std::chrono::milliseconds decoded() const = 0;
    /// For how long nothing has been there to hear; zero while there is, and while the user paused.
    virtual std::chrono::milliseconds silence() const = 0;
    /// Whether anything was ever heard of this play.
    virtual bool wasHeard() const = 0;
};
