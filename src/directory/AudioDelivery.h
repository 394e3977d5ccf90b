// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Sends an answer whose body is audio: what is live in real time after a burst, what is a file as
/// fast as the client takes it. It holds little for a client that does not read, and drops it after
/// a while. The server hands the connection over to it; destroying it drops the connection. Lives
/// on the server's thread.
#pragma once

#include "directory/Delivery.h"
#include "directory/IcyMetadata.h"

#include <random>

namespace directory {

class AudioDelivery {
public:
    static constexpr double burstSeconds = 4;
    /// What waits for the client here at most, and about as much again in the system.
    static constexpr std::size_t maxWaiting = std::size_t(64) * 1024;
    /// A client that takes nothing for so long, though there is something for it, is dropped.
    static constexpr double patienceSeconds = 5;

    /// Takes over the reference to `stream`, which a tappedStream made. `done` is called at most
    /// once and may destroy this object. Throws std::runtime_error when an encoder is missing.
    AudioDelivery(GIOStream *stream, const Answer &answer, const Delivery &delivery,
        std::string path, std::function<void()> done);
    AudioDelivery(const AudioDelivery &) = delete;
    AudioDelivery &operator=(const AudioDelivery &) = delete;

    void start();
    const std::string &path() const { return m_path; }
    /// From so many seconds from now on; replaces an earlier one that has not acted yet.
    void disturb(const Disturbance &disturbance);
    /// Destroys this object, by way of `done`.
    void reset();

private:
    void begin();
    void tick();
    void feed();
    void takeEncoded();
    void add(std::string bytes);
    void refill();
    void act();
    void write();
    bool impatient() const;
    void atEnd();
    void finish();
    std::size_t allowed() const;
    double elapsed() const;

    const Audio m_audio;
    const Delivery m_delivery;
    const std::string m_path;
    std::function<void()> m_done;

    std::unique_ptr<Encoder> m_encoder;
    std::unique_ptr<IcyMetadata> m_metadata;
    std::uint64_t m_frames = 0; ///< fed to the encoder
    std::uint64_t m_copied = 0; ///< of a file

    std::string m_waiting;
    std::size_t m_headLeft;
    std::size_t m_bodySent = 0;
    std::int64_t m_started = 0; ///< microseconds
    std::int64_t m_lastProgress = 0; ///< microseconds

    Disturbance m_disturbance;
    bool m_silent = false; ///< stalled
    std::size_t m_garbageLeft = 0;
    std::minstd_rand m_random;

    Watch m_timer;
    Watch m_disturbanceTimer;
    Wire m_wire;
};

} // namespace directory
