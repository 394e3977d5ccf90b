#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <thread>

/// Frames over a stream socket: a length of four bytes in the machine's byte order, then so many
/// bytes of payload. A thread of its own receives them; whoever sends does so on his own thread,
/// and never waits for the other side.
///
/// The sending side outlives the channel for those who still hold it; sending then comes to
/// nothing.
class Channel {
public:
    /// A longer payload is neither sent nor taken.
    static constexpr int MaxPayload = 32 * 1024 * 1024;
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
        /// Takes one payload; says what is wrong with it, which ends the connection, or nothing.
        std::function<QString(const QByteArray &payload)> take;
        /// The connection ended; \a reason tells why, unless the other side just went. Once;
        /// nothing comes after it.
        std::function<void(const QString &reason)> ended;
    };

    /// Takes over \a socket.
    explicit Channel(int socket);
    /// Ends the connection; waits for a handler that is running. Not from a handler.
    ~Channel();

    /// Begins to receive; both functions are called on the channel's thread.
    void start(Handler handler);
    const std::shared_ptr<Sender> &sender() const { return m_sender; }

    /// Waits for one payload, before start(). Empty when none came within \a milliseconds, or none
    /// that fits.
    QByteArray receiveOne(int milliseconds);

private:
    enum class Progress { Data, Later, Ended };

    void run();
    QString receive();
    Progress fill();
    QString takeFrames();

    const std::shared_ptr<Sender> m_sender;
    Handler m_handler;
    QByteArray m_received;
    std::thread m_thread;
};
