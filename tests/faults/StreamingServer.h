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

/// Times in the table of faults are of this clock.
using Clock = std::chrono::steady_clock;

/// A server's side of one connection whose request was read. What sends or waits returns false when
/// it is over: the other side is gone, or the server ends.
class Line {
public:
    virtual ~Line();
    virtual bool send(const QByteArray &bytes) = 0;
    virtual bool wait(double seconds) = 0;
    /// Ends the connection in order, or by a reset.
    virtual void close() = 0;
    virtual void reset() = 0;
    /// Seconds since the server's first request.
    virtual double age() const = 0;
    /// From here on something is wrong.
    virtual void markFault() = 0;
};

/// One thing that a server does on a connection; false ends the connection's script.
using Step = std::function<bool(Line &line)>;
using Script = std::vector<Step>;
/// For each path the scripts of its connections, in their order; the last goes on for all others.
/// What is not there is 404.
using Pages = std::map<QByteArray, std::vector<Script>>;

/// A stream server that does what a table of scripts says, each connection on a thread of its own.
class StreamingServer {
public:
    struct Arrival {
        QByteArray path; ///< empty while the server is away
        Clock::time_point at;
    };

    explicit StreamingServer(Pages pages);
    /// Ends what is under way.
    ~StreamingServer();

    quint16 port() const;
    std::vector<Arrival> arrivals() const;
    /// When a script did something wrong, the first time after something was sent in order.
    std::vector<Clock::time_point> faults() const;
    /// Resets all connections, present and to come, until it is back.
    void goAway();
    void comeBack();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// What scripts are made of.
namespace script {

Step send(const QByteArray &bytes);
/// A head without a length, and its lines beyond the type.
Step head(const char *type = "audio/mpeg", const QByteArray &more = {});
/// A whole answer with its length.
Step answer(int code, const QByteArray &body = {}, const char *type = "text/plain",
    const QByteArray &more = {});
/// The same, made anew each time.
Step answer(const std::function<QByteArray(double age)> &body, const char *type);
/// Audio in real time, with some seconds ahead; without \a seconds for ever.
Step live(const Media &media, double seconds = 0, double ahead = 4);
/// The same with ICY metadata after each \a interval bytes.
Step liveWithTitles(const Media &media, int interval, const QByteArray &title);
/// \a piece again and again, at that many bytes a second, until there were \a most.
Step flood(const QByteArray &piece, double bytesPerSecond, qint64 most = 256 << 20);
Step pause(double seconds);
/// Nothing more comes, but the connection stays.
Step stall();
Step reset();
Step close();

} // namespace script
