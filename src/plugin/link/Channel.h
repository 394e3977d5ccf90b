// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/Result.h"

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

/// Frames over a stream socket: a length of four bytes in the machine's byte order, then that many
/// bytes of payload.
///
/// Sending never blocks and works on any thread. Frames are received on the channel's own thread,
/// or on the event loop of the thread that calls start(): that saves the wake-up that handing them
/// to that thread would cost, and is for a thread that never blocks. Long payloads are received by
/// the channel's thread in either case, so that they do not hold up the event loop.
class Channel {
public:
    /// A longer payload is neither sent nor accepted.
    static constexpr int MaxPayload = 32 * 1024 * 1024;
    /// A payload of more bytes is received by the channel's thread.
    static constexpr int LongPayload = 64 * 1024;
    /// Bytes that wait for the other side to read. More than that, and it counts as stalled: the
    /// connection ends.
    static constexpr qint64 MaxQueued = 4 * qint64(MaxPayload);

    /// The sending side. Any thread. It may outlive the channel; sending then fails.
    class Sender {
    public:
        explicit Sender(int socket);
        Sender(const Sender &) = delete;
        Sender &operator=(const Sender &) = delete;
        ~Sender();

        /// Sends the payload, or queues what the socket does not take now. False when the
        /// connection has ended or the payload is too long.
        bool send(const QByteArray &payload);
        /// Ends the connection in both directions.
        void close();

    private:
        friend class Channel;
        struct Data;
        const std::unique_ptr<Data> d;
    };

    /// Who receives.
    enum class Reader { OwnThread, CallersLoop };

    struct Handler {
        /// Handles one payload, which is gone when it returns. A failure says what is wrong with
        /// the payload and ends the connection. One call at a time, on the thread that receives.
        std::function<Result<void, QString>(const QByteArray &payload)> received;
        /// The connection ended; \a reason is empty when the other side closed it. Once, after
        /// every received(), on the channel's thread.
        std::function<void(const QString &reason)> ended;
    };

    /// Takes ownership of \a socket.
    explicit Channel(int socket);
    /// Ends the connection and waits for a handler that is running; not to be called from one. On
    /// the thread that called start() if that one's event loop receives.
    ~Channel();

    /// Begins to receive.
    void start(Handler handler, Reader reader = Reader::OwnThread);
    const std::shared_ptr<Sender> &sender() const { return m_sender; }

    /// Waits for one payload, before start() on the channel's own thread. Empty when none came
    /// within \a milliseconds, or one that is too long.
    QByteArray receiveOne(int milliseconds);

private:
    enum class Progress { Data, Later, Ended };

    void run();
    void receiveUntilEnd();
    void receiveOnLoop();
    void handOverToLoop();
    void handOverToThread();
    bool receive() VESK_EXCLUDES(m_receiving);
    Progress fill() VESK_REQUIRES(m_receiving);
    quint32 announcedSize() const VESK_REQUIRES(m_receiving);
    Result<void, QString> handleFrames() VESK_REQUIRES(m_receiving);

    const std::shared_ptr<Sender> m_sender;
    Handler m_handler;
    std::thread m_thread;
    /// Of the thread that called start(), if its event loop receives; null otherwise. Enabled while
    /// m_isLoopsTurn.
    std::unique_ptr<QSocketNotifier> m_notifier;

    /// Whether the event loop is to receive what comes next, or the channel's thread. Changed only
    /// by the one of the two whose turn it is.
    std::atomic<bool> m_isLoopsTurn {false};
    /// The rest of a long payload is what comes next.
    std::atomic<bool> m_isLong {false};

    /// Held while receiving, handler included.
    VeskMutex m_receiving;
    QByteArray m_received VESK_GUARDED_BY(m_receiving);
    QString m_problem VESK_GUARDED_BY(m_receiving); ///< with what was received
    bool m_hasEnded VESK_GUARDED_BY(m_receiving) = false;
};
