// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "api/core/TrString.h"
#include "host/sound/SoundSink.h"
#include "media/AudioFormat.h"
#include "media/GstHandles.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>

struct _GstAppSrc;

/// An open sound output: appsrc ! audioconvert ! audioresample ! sink. Buffers get consecutive
/// timestamps; after a gap they continue at the present running time. Asks for the next buffer when
/// it has handed the last one to the sink, so that no more than two of them are on their way,
/// besides what the sink holds itself.
///
/// The functions that say so block as long as the driver does, and belong to one thread at a time;
/// all others may be called from any.
class SoundDevice {
public:
    /// Called on GStreamer's threads.
    struct Callbacks {
        /// isHungry() has become true.
        std::function<void(const SoundDevice *device)> hungry;
        /// Once: it does not work, or no longer. A text for the user.
        std::function<void(const TrString &problem)> failed;
        /// What is wrong where the sound goes to, while it goes on; empty: nothing any more.
        std::function<void(const TrString &problem)> healthChanged;
        /// Volume, from 0 to 1 and cubic, or mute of the device may be another one.
        std::function<void()> volumeChanged;
    };

    /// Takes the element of \a sink.
    SoundDevice(const SoundSink &sink, Callbacks callbacks);
    /// Calls close().
    ~SoundDevice();
    SoundDevice(const SoundDevice &) = delete;
    SoundDevice &operator=(const SoundDevice &) = delete;

    /// Opens the device; it is not running yet. Failure is told by Callbacks::failed. Blocks.
    void open();
    /// Starts the device, or halts it; halted it keeps what it holds. Blocks.
    void setRunning(bool running);
    /// Releases the device. A file is completed before, with all that was pushed; that takes until
    /// it is due, or CloseTime at most. Blocks.
    void close();

    bool isFile() const { return m_sink.isFile; }
    bool takesAll() const { return m_sink.takesAll; }
    bool isBroken() const { return m_broken; }
    bool isRunning() const { return m_running; }
    bool isHungry() const { return m_hungry; }

    /// Of the buffers that follow: 32-bit floating-point samples, interleaved.
    void setFormat(const AudioFormat &format);
    AudioFormat format() const;
    /// Takes \a audio, whole frames in format().
    void push(GstBuffer *audio);

    /// The running time, and that at which all that was pushed will have been heard.
    GstClockTime now() const;
    GstClockTime end() const;
    /// For how long there is something to be heard yet.
    std::chrono::nanoseconds remaining() const;

    /// Whether the device has a volume of its own; known once it is open.
    bool hasVolume() const { return m_volume != nullptr; }
    /// From 0 to 1, cubic. Without effect if there is no such volume. May block for a short time.
    void setVolume(double volume, bool muted);
    double volume() const;
    bool isMuted() const;

private:
    /// The longest wait for an output file to be completed.
    static constexpr std::chrono::milliseconds CloseTime {2000};

    GstElement *add(const char *factory);
    void findVolume();
    void complete();
    GstClockTime nowLocked() const VESK_REQUIRES(m_mutex);
    static void onHungry(_GstAppSrc *source, guint size, gpointer self);
    static GstBusSyncReply onMessage(GstBus *bus, GstMessage *message, gpointer self);
    static void onVolume(GObject *element, GParamSpec *property, gpointer self);
    void tell(GstMessage *message);
    void fail(const char *problem);

    const SoundSink m_sink;
    const Callbacks m_callbacks;
    GstPtr<GstElement> m_pipeline;
    GstElement *m_source = nullptr;
    GstPtr<GstElement> m_volume; ///< implements GstStreamVolume, or null; fixed by open()
    bool m_automatic = false; ///< the sink is autoaudiosink
    bool m_closed = false;
    std::atomic<bool> m_broken {false};
    std::atomic<bool> m_running {false};
    std::atomic<bool> m_hungry {false};

    mutable VeskMutex m_mutex;
    std::condition_variable m_changed; ///< at the end of the stream, and when broken
    AudioFormat m_format VESK_GUARDED_BY(m_mutex);
    GstClockTime m_end VESK_GUARDED_BY(m_mutex) = 0;
    /// The running time when it was halted.
    GstClockTime m_reached VESK_GUARDED_BY(m_mutex) = 0;
    bool m_endReached VESK_GUARDED_BY(m_mutex) = false;
};
