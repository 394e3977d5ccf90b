// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/HttpSettings.h"
#include "fuzz/fuzzing.h"
#include "host/player/HttpStream.h"

#include <QByteArray>
#include <QList>

#include <arpa/inet.h>
#include <atomic>
#include <mutex>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

// A stream server that sends anything: libcurl, the redirects and the parsing of the head. The
// input is the responses to successive connections, with record separators between them.

namespace {

constexpr char Separator = 0x1e;

/// Serves on a free port of this machine, to which the connections to all hosts are redirected.
class Server {
public:
    Server()
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const plain = reinterpret_cast<sockaddr *>(&address);
        FUZZ_REQUIRE(::bind(m_socket, plain, size) == 0 && ::listen(m_socket, 64) == 0);
        FUZZ_REQUIRE(::getsockname(m_socket, plain, &size) == 0);
        HttpSettings::setConnectTo({QStringLiteral("::127.0.0.1:%1").arg(ntohs(address.sin_port))});
        std::thread([this] { serve(); }).detach();
    }

    void setAnswers(const QList<QByteArray> &answers)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_answers = answers;
        m_asked = 0;
    }

    /// Connections that got a response since setAnswers().
    int asked() const { return m_asked; }

private:
    [[noreturn]] void serve()
    {
        for (;;) {
            const int connection = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection < 0)
                continue;
            // Closing with unread bytes would reset the connection, and the response could be lost.
            if (readRequest(connection)) {
                const QByteArray answer = nextAnswer();
                (void)!::send(connection, answer.constData(),
                    static_cast<std::size_t>(answer.size()), MSG_NOSIGNAL);
            }
            ::close(connection);
        }
    }

    /// False for anything but plain HTTP, such as a TLS handshake.
    static bool readRequest(int connection)
    {
        QByteArray request;
        char bytes[4096];
        while (!request.endsWith("\r\n\r\n")) {
            const ssize_t size = ::recv(connection, bytes, sizeof bytes, 0);
            if (size <= 0)
                return false;
            request.append(bytes, static_cast<int>(size));
            if (!request.startsWith("GET "))
                return false;
        }
        return true;
    }

    QByteArray nextAnswer()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_answers.value(m_asked++);
    }

    const int m_socket;
    std::mutex m_mutex;
    QList<QByteArray> m_answers; ///< guarded by m_mutex
    std::atomic<int> m_asked {0};
};

class Receiver : public HttpStreamReceiver {
public:
    bool begin(const HttpStreamHead &head) override
    {
        ++m_begun;
        FUZZ_REQUIRE(m_begun == 1 && m_taken == 0);
        // The status may be any number: that of a truncated interim head, or one of more than three
        // digits after "HTTP/2".
        FUZZ_REQUIRE(head.length >= -1 && head.offset >= 0);
        FUZZ_REQUIRE(head.icyInterval >= 0 && head.icyInterval <= 16 * 1024 * 1024);
        FUZZ_REQUIRE(head.icyBitRate >= 0 && head.icyBitRate < 100'000'000);
        FUZZ_REQUIRE(head.retryAfter.count() >= 0 && head.retryAfter <= std::chrono::hours(24));
        // No TLS handshake succeeds here, so no head comes over https.
        FUZZ_REQUIRE(head.url.scheme() == QLatin1String("http"));
        m_length = head.length;
        return true;
    }

    bool take(const char *data, std::size_t size) override
    {
        FUZZ_REQUIRE(m_begun == 1 && data && size > 0);
        m_taken += static_cast<qint64>(size);
        return true;
    }

    bool goOn() override { return true; }

    void requireSound(const HttpStreamResult &result) const
    {
        FUZZ_REQUIRE((result.kind == HttpStreamResult::Failed) == !result.problem.isEmpty());
        FUZZ_REQUIRE(result.kind != HttpStreamResult::Refused);
        FUZZ_REQUIRE(result.kind != HttpStreamResult::Interrupted);
        FUZZ_REQUIRE(result.kind == HttpStreamResult::Failed || m_begun == 1);
        FUZZ_REQUIRE(m_length < 0 || m_taken <= m_length);
        if (result.kind == HttpStreamResult::Closed)
            FUZZ_REQUIRE(m_length < 0);
    }

private:
    int m_begun = 0;
    qint64 m_taken = 0;
    qint64 m_length = -1;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto &server = *new Server;
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    server.setAnswers(bytes.split(Separator));
    HttpStream stream({std::chrono::seconds(5), std::chrono::seconds(5)});
    Receiver receiver;
    HttpStream::Request request;
    request.url = QUrl(QStringLiteral("http://radio.example/stream"));
    request.offset = size % 3 == 0 ? 1000 : 0;
    receiver.requireSound(stream.get(request, receiver));
    // One request and five redirects, each of them repeated once when a connection closes without a
    // response.
    constexpr int MostConnections = 12;
    FUZZ_REQUIRE(server.asked() <= MostConnections);
    return 0;
}
