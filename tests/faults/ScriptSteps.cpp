// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/StreamingServer.h"

namespace script {

namespace {

constexpr double TickSeconds = 0.05;

double secondsSince(Clock::time_point time)
{
    return std::chrono::duration<double>(Clock::now() - time).count();
}

} // namespace

Step send(const QByteArray &bytes)
{
    return [bytes](Line &line) { return line.send(bytes); };
}

Step head(const char *type, const QByteArray &more)
{
    return send("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: " + QByteArray(type) + "\r\n"
        + more + "\r\n");
}

Step answer(int code, const QByteArray &body, const char *type, const QByteArray &more)
{
    return send("HTTP/1.1 " + QByteArray::number(code) + " Scripted\r\nConnection: close\r\n"
        + "Content-Type: " + type + "\r\nContent-Length: " + QByteArray::number(body.size())
        + "\r\n" + more + "\r\n" + body);
}

Step answer(const std::function<QByteArray(double age)> &body, const char *type)
{
    return [body, type = QByteArray(type)](
               Line &line) { return answer(200, body(line.age()), type.constData())(line); };
}

Step live(const Media &media, double seconds, double ahead)
{
    return [media, seconds, ahead](Line &line) {
        const Clock::time_point begin = Clock::now();
        for (qint64 sent = 0; seconds == 0 || secondsSince(begin) < seconds;) {
            const double due = (secondsSince(begin) + ahead) * media.bytesPerSecond();
            while (sent < static_cast<qint64>(due)) {
                const auto at = static_cast<int>(sent % media.bytes.size());
                const QByteArray piece
                    = media.bytes.mid(at, static_cast<int>(due - static_cast<double>(sent)));
                if (!line.send(piece))
                    return false;
                sent += piece.size();
            }
            if (!line.wait(TickSeconds))
                return false;
        }
        return true;
    };
}

Step liveWithTitles(const Media &media, int interval, const QByteArray &title)
{
    const int blocks = (title.size() + 15) / 16;
    const QByteArray block = static_cast<char>(blocks) + title.leftJustified(16 * blocks, '\0');
    Media mixed;
    // A whole number of intervals, so that they stay aligned when the bytes repeat.
    for (int at = 0; at + interval <= media.bytes.size(); at += interval)
        mixed.bytes += media.bytes.mid(at, interval) + block;
    mixed.seconds = (media.bytes.size() / interval) * interval / media.bytesPerSecond();
    return live(mixed);
}

Step flood(const QByteArray &piece, double bytesPerSecond, qint64 most)
{
    return [piece, bytesPerSecond, most](Line &line) {
        const Clock::time_point begin = Clock::now();
        for (qint64 sent = 0; sent < most; sent += piece.size()) {
            if (!line.send(piece))
                return false;
            const double early = static_cast<double>(sent) / bytesPerSecond - secondsSince(begin);
            if (early > 0 && !line.wait(early))
                return false;
        }
        return line.wait(600);
    };
}

Step pause(double seconds)
{
    return [seconds](Line &line) { return line.wait(seconds); };
}

Step stall()
{
    return [](Line &line) {
        line.markFault();
        return line.wait(600);
    };
}

Step reset()
{
    return [](Line &line) {
        line.markFault();
        line.reset();
        return false;
    };
}

Step close()
{
    return [](Line &line) {
        line.markFault();
        line.close();
        return false;
    };
}

} // namespace script
