// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "base/files/Descriptor.h"

#include <condition_variable>
#include <memory>
#include <string>
#include <thread>

struct _GCancellable;
struct _GSocketConnection;

/// A place outside of the host that takes raw samples: frames of FrameSize bytes. Nothing here
/// blocks, and what the place does not take at once is dropped, by whole frames, so that the host
/// goes on in real time whatever the reader does. One thread at a time; the process ignores
/// SIGPIPE, as the host does.
class RawPlace {
public:
    static constexpr std::size_t FrameSize = 4;
    /// So long a place may take nothing before it is opened anew, in bytes: ten seconds.
    static constexpr std::size_t Patience = 10 * 48000 * FrameSize;

    enum class Health {
        Fine,
        Opening, ///< not known yet
        Absent, ///< nobody is there
        Slow, ///< not everything is taken
        Unusable, ///< cannot be opened: reason() says why
    };

    virtual ~RawPlace() = default;

    /// Hands over \a size bytes of whole frames, or drops them.
    Health write(const char *frames, std::size_t size);
    /// For Unusable: words of the system.
    const std::string &reason() const { return m_reason; }

protected:
    /// What can be written to without blocking; -1 when there is none now, and why.
    virtual int descriptor(Health &why) = 0;
    /// As write(2).
    virtual ssize_t put(int descriptor, const char *data, std::size_t size) = 0;
    /// The reader has gone, or takes nothing for too long.
    virtual void lost() = 0;
    /// Fine if somebody reads what is taken.
    virtual Health heard() const { return Health::Fine; }
    /// The frame that was begun does not have to be completed: nobody has its beginning.
    void forgetBegun() { m_owed.clear(); }
    void setReason(std::string reason) { m_reason = std::move(reason); }

private:
    std::size_t writeSome(int descriptor, const char *data, std::size_t size, bool &isLost);

    std::string m_reason;
    std::string m_owed; ///< the rest of a frame that was taken in part
    std::size_t m_dropped = 0; ///< bytes, since something was taken
    std::size_t m_taken = 0; ///< bytes, since something was dropped
    bool m_isSlow = false;
};

/// A FIFO; made if there is none of that name.
///
/// Many readers, Snapserver among them, open a FIFO, find no writer and close it again some times a
/// second: they would hardly ever be met. So this object opens both ends, and takes out again what
/// nobody has read at the next write, until somebody reads. From then on it has the writing end
/// alone, which tells when the reader goes.
class RawFifo : public RawPlace {
public:
    /// So many writes may be unread before nobody is said to read.
    static constexpr int Unread = 5;

    explicit RawFifo(std::string file)
        : m_file(std::move(file))
    {
    }

protected:
    int descriptor(Health &why) override;
    ssize_t put(int descriptor, const char *data, std::size_t size) override;
    void lost() override;
    Health heard() const override;

private:
    bool open();
    void lookForReader();

    const std::string m_file;
    files::Descriptor m_fifo;
    files::Descriptor m_own; ///< the reading end, while nobody else is known to read
    ssize_t m_waiting = 0; ///< bytes that were put in
    int m_unread = 0; ///< writes that nobody has read, up to Unread
};

/// A TCP server. A thread of this object's resolves its name and connects, from the start on, and
/// again when the connection is lost, after waits of up to MaxWait. What the server sends is never
/// read.
class RawServer : public RawPlace {
public:
    static constexpr std::chrono::seconds MaxWait {5};
    /// For one attempt, in seconds.
    static constexpr unsigned ConnectTime = 5;
    /// Of the system's buffer, in bytes: what waits there is heard late.
    static constexpr int BufferSize = 64 * 1024;

    RawServer(std::string host, int port);
    /// Does not wait for a name server or the connection.
    ~RawServer() override;

protected:
    int descriptor(Health &why) override;
    ssize_t put(int descriptor, const char *data, std::size_t size) override;
    void lost() override;

private:
    void run();
    _GSocketConnection *connectOnce() const;

    const std::string m_host;
    const int m_port;
    _GCancellable *const m_cancel;
    VeskMutex m_mutex;
    std::condition_variable m_changed;
    _GSocketConnection *m_connection VESK_GUARDED_BY(m_mutex) = nullptr;
    Health m_why VESK_GUARDED_BY(m_mutex) = Health::Opening;
    bool m_ending VESK_GUARDED_BY(m_mutex) = false;
    std::thread m_thread;
};
