// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskValue.h"
#include "plugin/link/Message.h"
#include "plugin/process/PluginProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <map>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

// A plug-in process that breaks the protocol on purpose. The base name of its plug-in file selects
// how it starts; after loading, the path of each request selects what it does. Its state across
// restarts is kept next to that file: "runs" has a byte for each run, "go" lets a slow start
// continue.

namespace {

/// Blocks until the host kills the process.
[[noreturn]] void waitForever()
{
    while (true)
        ::pause();
}

void writeAll(const QByteArray &bytes)
{
    int sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(PluginSocket, bytes.constData() + sent,
            static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            waitForever();
        sent += static_cast<int>(count);
    }
}

void sendHead(quint32 size)
{
    writeAll(QByteArray(reinterpret_cast<const char *>(&size), sizeof size));
}

void send(const QByteArray &payload)
{
    sendHead(static_cast<quint32>(payload.size()));
    writeAll(payload);
}

QByteArray receive()
{
    quint32 size = 0;
    if (::recv(PluginSocket, &size, sizeof size, MSG_WAITALL) != ssize_t(sizeof size))
        waitForever();
    QByteArray payload(static_cast<int>(size), Qt::Uninitialized);
    if (size > 0 && ::recv(PluginSocket, payload.data(), size, MSG_WAITALL) != ssize_t(size))
        waitForever();
    return payload;
}

[[noreturn]] void waitForHost()
{
    while (true)
        receive();
}

[[noreturn]] void crash(int signal)
{
    std::fprintf(stderr, "it was too much\n");
    std::signal(signal, SIG_DFL); // bypasses a sanitizer's handler
    ::raise(signal);
    waitForever();
}

CMPath path(const char *base)
{
    return CMPath(QStringLiteral("Fake"), QString::fromLatin1(base));
}

void answer(quint64 id, const QVariant &value)
{
    ResponseMessage message;
    message.id = id;
    message.value = value;
    send(encode(message));
}

class FakePlugin {
public:
    explicit FakePlugin(const QFileInfo &plugin)
        : m_folder(plugin.dir())
        , m_mode(plugin.baseName())
        , m_run(countRun())
    {
    }

    [[noreturn]] void run()
    {
        begin();
        while (true) {
            const QByteArray payload = receive();
            switch (kindOf(payload)) {
            case MessageKind::Stop:
                stop();
                break;
            case MessageKind::Request:
                request(*decode<RequestMessage>(payload));
                break;
            case MessageKind::Response:
                passOn(*decode<ResponseMessage>(payload));
                break;
            case MessageKind::Subscribe:
                watch(*decode<SubscribeMessage>(payload));
                break;
            case MessageKind::Value:
                m_told = decode<ValueMessage>(payload)->value;
                if (m_later)
                    answer(std::exchange(m_later, 0), m_run);
                break;
            default:
                break;
            }
        }
    }

private:
    int countRun() const
    {
        QFile file(m_folder.filePath(QStringLiteral("runs")));
        if (!file.open(QIODevice::Append))
            std::_Exit(5);
        file.write("x");
        file.flush();
        return static_cast<int>(file.size());
    }

    bool isMode(const char *mode) const { return m_mode == QLatin1String(mode); }

    /// The handshake up to Loaded, or the fault that the mode asks for.
    void begin() const
    {
        if (isMode("garbage"))
            sendAndWait(QByteArray(64, '\xee'));
        if (isMode("empty"))
            sendAndWait(QByteArray());
        if (isMode("oversized"))
            oversized();
        if (isMode("early"))
            sendAndWait(encode(RouteMessage {path(""), true}));
        if (isMode("magic"))
            sendAndWait(encode(HelloMessage {HelloMessage::TheMagic + 1}));
        if (isMode("version"))
            sendAndWait(
                encode(HelloMessage {HelloMessage::TheMagic, HelloMessage::TheVersion + 1}));
        if (isMode("silent"))
            waitForHost();
        if (isMode("exits"))
            exit();
        if (isMode("segfaults"))
            crash(SIGSEGV);
        if (isMode("aborts"))
            crash(SIGABRT);
        // These modes start normally in the first run.
        if (isMode("fails2") && m_run == 2)
            exit();
        if (isMode("fails2to9") && m_run >= 2 && m_run <= 9)
            exit();
        while (isMode("slow") && m_run == 2 && !m_folder.exists(QStringLiteral("go")))
            ::usleep(10000);

        send(encode(HelloMessage()));
        while (kindOf(receive()) != MessageKind::Start) { }
        if (isMode("failing") || (isMode("fails2later") && m_run == 2))
            sendAndWait(encode(LoadedMessage {CMPath(), QStringLiteral("no licence")}));
        if (isMode("noroot"))
            sendAndWait(encode(LoadedMessage()));
        send(encode(RouteMessage {path(""), true}));
        send(encode(RouteMessage {CMPath(QStringLiteral("player"), QStringLiteral("fake")), true}));
        send(encode(LoadedMessage {path(""), QString()}));
    }

    [[noreturn]] static void sendAndWait(const QByteArray &payload)
    {
        send(payload);
        waitForHost();
    }

    [[noreturn]] static void oversized()
    {
        sendHead(0xffffffff);
        waitForHost();
    }

    [[noreturn]] static void exit()
    {
        std::printf("one\nmy last words\n\n");
        std::fflush(stdout);
        std::_Exit(7);
    }

    void stop() const
    {
        if (!isMode("stubborn"))
            std::_Exit(0);
    }

    void request(const RequestMessage &message)
    {
        const QString base = message.path.base();
        const auto is = [&base](const char *text) { return base == QLatin1String(text); };
        if (is("value"))
            answer(message.id, QVariantList {static_cast<int>(::getpid()), m_run});
        else if (is("watched"))
            answer(message.id, QVariantList {QStringList(m_watched.values())});
        else if (is("told"))
            answer(message.id, QVariantList {m_told});
        else if (is("ask"))
            ask(message);
        else if (is("print"))
            print(message.id);
        else if (is("kept"))
            keep(message.id);
        else if (is("later"))
            m_later = message.id; // answered on the next Value message
        else
            misbehave(message.id, base.toLatin1());
    }

    /// Any other name, such as "silent", leaves the request unanswered.
    static void misbehave(quint64 id, const QByteArray &how)
    {
        if (how == "garbage")
            send(QByteArray(64, '\xee'));
        else if (how == "oversized")
            sendHead(0x7fffffff);
        else if (how == "unasked")
            answer(id + 1000, 1);
        else if (how == "twice")
            twice(id);
        else if (how == "unreadable")
            send(QByteArray(1, char(MessageKind::Response)) + QByteArray(20, '\xff'));
        else if (how == "hello")
            send(encode(HelloMessage()));
        else if (how == "loaded")
            send(encode(LoadedMessage {path(""), QString()}));
        else if (how == "keptodd")
            send(encode(KeptMessage {path("own"), {}, true}));
        else if (how == "nowhere")
            send(encode(RouteMessage()));
        else if (how == "crash")
            crash(SIGSEGV);
        else if (how == "abort")
            crash(SIGABRT);
        else if (how == "exit")
            exit();
        else if (how == "hangup")
            hangUp();
        else if (how == "stop")
            ::raise(SIGSTOP);
        else if (how == "requests")
            floodRequests();
        else if (how == "routes")
            floodRoutes();
        else if (how == "watches")
            floodWatches();
    }

    static void twice(quint64 id)
    {
        answer(id, 1);
        answer(id, 2);
    }

    [[noreturn]] static void hangUp()
    {
        ::shutdown(PluginSocket, SHUT_RDWR);
        waitForever();
    }

    static void floodRequests()
    {
        for (quint64 id = 1; id <= 2000; ++id) {
            RequestMessage message;
            message.id = id;
            message.kind = CMRequest::GetData;
            message.path = CMPath(QStringLiteral("Held"), QString::number(id));
            send(encode(message));
        }
    }

    static void floodRoutes()
    {
        for (int i = 0; i < 2000; ++i) {
            const CMPath route(QStringLiteral("Flood"), QString::number(i));
            send(encode(RouteMessage {route, true}));
        }
    }

    static void floodWatches()
    {
        for (int i = 0; i < 20'000; ++i)
            send(encode(
                SubscribeMessage {CMPath(QStringLiteral("Flood"), QString::number(i)), true}));
    }

    /// Reports the setting "a" as read, with the value 1, and responds.
    static void keep(quint64 id)
    {
        const CMPath setting(QStringLiteral("settings"), QStringLiteral("a"));
        send(encode(KeptMessage {setting, VeskValue::fromInt(1).toHash(), true}));
        answer(id, QVariantList {1});
    }

    void print(quint64 id) const
    {
        const std::string line(50'000, 'l');
        std::printf("\x1b[2Jclear\ttab\x07\x7f\rreturn\n");
        std::printf("%s\nafter\n\n\n", line.c_str());
        std::printf("not ended");
        std::fflush(stdout);
        std::fprintf(stderr, ", and an error\n");
        answer(id, QVariantList {1});
    }

    /// Sends the request back to the host for the path in its parameter; passOn() returns the
    /// response.
    void ask(const RequestMessage &message)
    {
        const quint64 id = ++m_lastId;
        m_passedOn[id] = message.id;
        RequestMessage question = message;
        question.id = id;
        question.path = CMPath::fromEncoded(message.path.param(QStringLiteral("path")));
        send(encode(question));
    }

    void passOn(ResponseMessage message)
    {
        message.id = m_passedOn[message.id];
        send(encode(message));
    }

    void watch(const SubscribeMessage &message)
    {
        if (message.on)
            m_watched.insert(message.path.toEncoded());
        else
            m_watched.remove(message.path.toEncoded());
    }

    const QDir m_folder;
    const QString m_mode;
    const int m_run;
    QSet<QString> m_watched;
    QVariantHash m_told;
    quint64 m_lastId = 0;
    quint64 m_later = 0; ///< the id of the request to answer later; 0 for none
    std::map<quint64, quint64> m_passedOn; ///< the host's request ids, by this process's
};

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    FakePlugin(QFileInfo(QString::fromLocal8Bit(argv[1]))).run();
}
