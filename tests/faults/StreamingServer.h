// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "tests/faults/Media.h"

#include <QByteArray>
#include <QList>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <vector>

/// The clock of all times in the table of faults.
using Clock = std::chrono::steady_clock;

/// The server's side of one connection, after its request was read. Functions that send or wait
/// return false once the peer is gone or the server ends.
class Line {
public:
    virtual ~Line();
    virtual bool send(const QByteArray &bytes) = 0;
    virtual bool wait(double seconds) = 0;
    /// Closes the connection normally, or by a reset.
    virtual void close() = 0;
    virtual void reset() = 0;
    /// Seconds since the server's first request.
    virtual double age() const = 0;
    /// Marks the moment of a fault.
    virtual void markFault() = 0;
};

/// One action of a server on a connection; false ends the connection's script.
using Step = std::function<bool(Line &line)>;
using Script = std::vector<Step>;
/// For each path the scripts of its connections, in order; the last one serves all further
/// connections. Other paths are answered with 404.
using Pages = std::map<QByteArray, std::vector<Script>>;

/// A stream server that runs a table of scripts, each connection on a thread of its own.
class StreamingServer {
public:
    struct Arrival {
        QByteArray path; ///< empty while the server is away
        Clock::time_point at;
    };

    explicit StreamingServer(Pages pages);
    /// Ends all connections.
    ~StreamingServer();

    quint16 port() const;
    std::vector<Arrival> arrivals() const;
    /// The moments of faults: for each script the first after healthy content.
    std::vector<Clock::time_point> faults() const;
    /// Resets all present and future connections until comeBack().
    void goAway();
    void comeBack();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// The steps of scripts.
namespace script {

Step send(const QByteArray &bytes);
/// A response head without a length; \a lines follow the content type.
Step head(const char *type = "audio/mpeg", const QByteArray &more = {});
/// A complete response with its length.
Step answer(int code, const QByteArray &body = {}, const char *type = "text/plain",
    const QByteArray &more = {});
/// The same with a body that is computed for each response.
Step answer(const std::function<QByteArray(double age)> &body, const char *type);
/// Audio in real time, some seconds ahead of it; without \a seconds for ever.
Step live(const Media &media, double seconds = 0, double ahead = 4);
/// The same with ICY metadata after each \a interval bytes.
Step liveWithTitles(const Media &media, int interval, const QByteArray &title);
/// Repeats \a piece at that many bytes a second, up to \a most bytes.
Step flood(const QByteArray &piece, double bytesPerSecond, qint64 most = 256 << 20);
Step pause(double seconds);
/// Sends nothing more and keeps the connection open.
Step stall();
Step reset();
Step close();

} // namespace script
