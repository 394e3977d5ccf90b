// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/Mutex.h"
#include "host/player/StreamConsumer.h"
#include "host/player/StreamReader.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/WorkerThread.h"

#include <QElapsedTimer>

#include <atomic>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// \file
/// Shared by the tests of the stream reader: a server with scripted paths, a consumer that does not
/// decode, and short times.

/// Bytes that no sniffer takes for text.
inline QByteArray audio(int size, char fill = '\x01')
{
    return QByteArray("\xFF\xFB\x90\x00", 4) + QByteArray(size - 4, fill);
}

/// A stream without a Content-Length; the connection closes after \a bytes.
inline ScriptedServer::Response endless(const QByteArray &bytes, const QByteArray &headers = {})
{
    ScriptedServer::Response response;
    response.body = "HTTP/1.0 200 OK\r\nContent-Type: audio/mpeg\r\n" + headers + "\r\n" + bytes;
    response.end = ScriptedServer::End::Raw;
    return response;
}

inline ScriptedServer::Response file(const QByteArray &bytes)
{
    return {200, bytes, {}, ScriptedServer::End::Complete, 0};
}

/// Takes everything. A thousand bytes count as a second of audio, which is heard at once; a chunk
/// that ends in a zero byte counts as no audio.
class FakeConsumer : public StreamConsumer {
public:
    using Milliseconds = std::chrono::milliseconds;

    void beginAudio() override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_begins;
        m_decoded = 0;
    }
    Taken takeAudio(const char *data, std::size_t size) override
    {
        if (full) {
            std::this_thread::sleep_for(Milliseconds(5));
            return Taken::None;
        }
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bytes.append(data, static_cast<int>(size));
        if (size > 0 && data[size - 1] != '\0') {
            m_decoded += static_cast<int>(size);
            m_heard = true;
        }
        m_taken.start();
        return Taken::All;
    }
    bool endAudio() override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_ends;
        return true;
    }
    void forgetAudio() override { usable = true; }
    void takeTitle(const QString &title) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_titles.append(title);
    }
    void takeBitRate(int bitRate) override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bitRate = bitRate;
    }
    bool isUsable() const override { return usable; }
    Milliseconds decoded() const override
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const bool isDone = m_taken.isValid() && m_taken.elapsed() >= late;
        return Milliseconds(isDone ? m_decoded : 0);
    }
    Milliseconds ahead() const override { return plenty; }
    Milliseconds silence() const override { return silent; }
    bool wasHeard() const override { return locked(m_heard); }

    QByteArray bytes() const { return locked(m_bytes); }
    QStringList titles() const { return locked(m_titles); }
    int begins() const { return locked(m_begins); }
    int ends() const { return locked(m_ends); }
    int bitRate() const { return locked(m_bitRate); }

    std::atomic<bool> usable {true};
    std::atomic<bool> full {false}; ///< takeAudio() has no space
    std::atomic<int> late {0}; ///< milliseconds from the last bytes until they are decoded
    std::atomic<Milliseconds> silent {Milliseconds(0)};
    std::atomic<Milliseconds> plenty {Milliseconds(0)}; ///< what ahead() returns

private:
    template <class Value>
    Value locked(const Value &value) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return value;
    }

    mutable std::mutex m_mutex;
    /// Guarded by m_mutex.
    QByteArray m_bytes;
    QElapsedTimer m_taken; ///< since the last bytes
    QStringList m_titles;
    int m_begins = 0;
    int m_ends = 0;
    int m_decoded = 0; ///< bytes since beginAudio()
    int m_bitRate = 0;
    bool m_heard = false;
};

class StreamReaderFixture : public testing::Test {
protected:
    using Milliseconds = std::chrono::milliseconds;
    using Response = ScriptedServer::Response;
    using End = ScriptedServer::End;

    StreamReaderFixture()
        : server([this](const ScriptedServer::Request &request) { return answer(request); })
    {
        // Longer than any machine stands still, and than each wait below. Tests of what happens
        // when one of them is over set it.
        times.http.silence = times.http.connect = times.giveUp = times.entry = Milliseconds(30000);
        times.lastTry = Milliseconds(300);
    }
    ~StreamReaderFixture() override { reader.reset(); }

    Response answer(const ScriptedServer::Request &request)
    {
        const auto found = answers.find(request.path());
        return found == answers.end() ? Response {404, "no", {}, End::Complete, 0}
                                      : found->second(request);
    }
    void serve(const QByteArray &path, const Response &response)
    {
        answers[path] = [response](const ScriptedServer::Request &) { return response; };
    }
    /// When requests came. Any thread.
    class RequestTimes {
    public:
        RequestTimes() { m_clock.start(); }
        /// How many there are now.
        std::size_t add()
        {
            const VeskMutexLock lock(m_mutex);
            m_all.emplace_back(m_clock.elapsed());
            return m_all.size();
        }
        std::vector<Milliseconds> all() const
        {
            const VeskMutexLock lock(m_mutex);
            return m_all;
        }

    private:
        mutable VeskMutex m_mutex;
        QElapsedTimer m_clock;
        std::vector<Milliseconds> m_all VESK_GUARDED_BY(m_mutex);
    };
    /// Responds to the first request for \a path with \a first, to later ones with \a then.
    std::shared_ptr<RequestTimes> serveAndTime(
        const QByteArray &path, const Response &first, const Response &then)
    {
        auto tries = std::make_shared<RequestTimes>();
        answers[path] = [tries, first, then](const ScriptedServer::Request &) {
            return tries->add() == 1 ? first : then;
        };
        return tries;
    }
    QByteArray address(const QByteArray &path) const
    {
        return "http://127.0.0.1:" + QByteArray::number(server.port()) + path;
    }
    void play(const QByteArray &path, bool live = true)
    {
        play({QUrl::fromEncoded(address(path)), live});
    }
    void play(const StreamSource &source)
    {
        reader = std::make_unique<StreamReader>(source, consumer, times);
        QObject::connect(reader.get(), &StreamReader::ended, [this] { ended = true; });
        QObject::connect(reader.get(), &StreamReader::gaveUp, reader.get(),
            [this](const TrString &why) { problem = why.toString(); });
        QObject::connect(reader.get(), &StreamReader::fellBehind, [this] { fellBehind = true; });
        QObject::connect(reader.get(), &StreamReader::problemChanged, reader.get(),
            [this](const TrString &text) { told.append(text.toString()); });
        reader->start();
    }
    bool waitForEnd()
    {
        return spinUntil([this] { return ended || !problem.isEmpty(); });
    }
    /// Whether a reader that \a begin has brought to where it waits ends within this time, in one
    /// of five tries: the machine may stand still during some of them.
    bool stopsWithin(Milliseconds time, const std::function<void()> &begin)
    {
        for (int i = 0; i < 5; ++i) {
            begin();
            QElapsedTimer clock;
            clock.start();
            reader.reset();
            if (clock.elapsed() < time.count())
                return true;
        }
        return false;
    }
    int requests(const QByteArray &path) const
    {
        return server.requestLines().count("GET " + path);
    }
    bool waitForBytes(int count)
    {
        return spinUntil([this, count] { return consumer.bytes().size() >= count; });
    }

    /// Handlers by path. The server calls them until its destruction, which follows that of the
    /// test's local variables: they must own the state that they use.
    std::map<QByteArray, std::function<Response(const ScriptedServer::Request &)>> answers;
    ScriptedServer server;
    StreamReader::Times times;
    FakeConsumer consumer;
    std::unique_ptr<StreamReader> reader;
    std::atomic<bool> ended {false};
    std::atomic<bool> fellBehind {false};
    QString problem; ///< the reason for giving up
    QStringList told; ///< the texts of problemChanged()
};
