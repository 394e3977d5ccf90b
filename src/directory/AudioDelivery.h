// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Sends a response whose body is audio: live audio in real time after a burst, files as fast as
/// the client reads. The buffer for a client that does not read is small, and the client is dropped
/// after a while. Owns the connection, which the server hands off to it; destroying it closes the
/// connection. Lives on the server's thread.
#pragma once

#include "directory/Delivery.h"
#include "directory/IcyMetadata.h"

#include <random>

namespace directory {

class AudioDelivery {
public:
    static constexpr double BurstSeconds = 4;
    /// The bound of the buffer here; the kernel's send buffer holds about as much again.
    static constexpr std::size_t MaxWaiting = std::size_t(64) * 1024;
    /// A client that reads nothing for this long, although data are buffered for it, is dropped.
    static constexpr double PatienceSeconds = 5;

    /// Takes over the reference to `stream`, which comes from tappedStream(). `done` is called at
    /// most once and may destroy this object. Throws std::runtime_error when an encoder is missing.
    AudioDelivery(GIOStream *stream, const Answer &answer, const Delivery &delivery,
        std::string path, std::function<void()> done);
    AudioDelivery(const AudioDelivery &) = delete;
    AudioDelivery &operator=(const AudioDelivery &) = delete;

    void start();
    const std::string &path() const { return m_path; }
    /// Acts after the disturbance's seconds; replaces an earlier one that has not acted yet.
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
