// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

/// Frames over a stream socket: a length of four bytes in the machine's byte order, then so many
/// bytes of payload. A thread of its own receives them, or in its place one that it is lent to;
/// whoever sends does so on his own thread, and never waits for the other side.
///
/// The sending side outlives the channel for those who still hold it; sending then comes to
/// nothing.
class Channel {
public:
    /// A longer payload is neither sent nor taken.
    static constexpr int MaxPayload = 32 * 1024 * 1024;
    static constexpr std::chrono::milliseconds BusyTime {3};
    /// What the other side has not taken yet. One that lets this pile up has stopped reading.
    static constexpr qint64 MaxWaiting = 4 * qint64(MaxPayload);

    /// The sending side. Any thread.
    class Sender {
    public:
        explicit Sender(int socket);
        Sender(const Sender &) = delete;
        Sender &operator=(const Sender &) = delete;
        ~Sender();

        /// False when it was not taken, for one who is gone or for its length.
        bool send(const QByteArray &payload);
        /// Ends the connection in both directions.
        void close();

    private:
        friend class Channel;
        struct Data;
        const std::unique_ptr<Data> d;
    };

    struct Handler {
        /// Takes one payload; says what is wrong with it, which ends the connection, or nothing. On
        /// whichever thread receives, one at a time.
        std::function<QString(const QByteArray &payload)> take;
        /// The connection ended; \a reason tells why, unless the other side just went. Once;
        /// nothing comes after it. On the channel's thread.
        std::function<void(const QString &reason)> ended;
    };

    /// Takes over \a socket.
    explicit Channel(int socket);
    /// Ends the connection; waits for a handler that is running. Not from a handler.
    ~Channel();

    /// Begins to receive.
    void start(Handler handler);
    const std::shared_ptr<Sender> &sender() const { return m_sender; }

    /// Waits for one payload, before start(). Empty when none came within \a milliseconds, or none
    /// that fits.
    QByteArray receiveOne(int milliseconds);

    /// \name Another thread in the place of the channel's
    /// One at a time, after start(); see LoopReceiver.
    /// @{

    int socket() const;
    /// Not while a long payload comes, nor after the end.
    bool canLend() const { return !m_isForThread; }
    /// Has \a function called, on the channel's thread, whenever it can lend again; or nothing.
    void whenCanLend(std::function<void()> function);
    /// From here on what comes is left to receiveNow().
    void lend();
    /// The channel's thread receives again.
    void recall();
    /// It does so unless lend() is called again soon: within BusyTime, or twice that.
    void recallSoon();
    /// Takes what is there, without waiting. Returns whether there may be more of it later; if not,
    /// the channel's thread has to do the rest, and is to be given its place back.
    bool receiveNow();

    /// @}

private:
    enum class Progress { Data, Later, Ended };

    void run();
    void receive();
    bool receiveSome();
    Progress fill();
    QString takeFrames();
    void startTimer();
    void onTimer();

    const std::shared_ptr<Sender> m_sender;
    Handler m_handler;
    std::thread m_thread;

    /// Held while somebody receives.
    mutable std::mutex m_receiving;
    /// Guarded by m_receiving.
    QByteArray m_received;
    QString m_problem; ///< with what was received
    std::function<void()> m_whenCanLend;

    /// What comes next has to be received by the channel's thread: the rest of a long payload, or
    /// the end.
    std::atomic<bool> m_isForThread {false};

    /// Runs out after BusyTime. It is not stopped for what happens in between, which would take
    /// longer than most of what that is.
    const int m_timer;
    std::mutex m_lendMutex;
    /// Guarded by m_lendMutex.
    bool m_isLent = false;
    quint64 m_lendCount = 0; ///< calls of lend()
    bool m_isRecalled = false; ///< since the last of them
    bool m_isTimed = false; ///< m_timer runs
    quint64 m_timedCount = 0; ///< m_lendCount when it was started
};
