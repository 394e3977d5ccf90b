// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// \file
/// What a client of the host's WebSocket waits for, with TuneIn's plug-in in a process of its own:
/// the root menu beside a GET of the same by libcurl alone; a service's answer over TLS beside one
/// without; and how much longer some requests of many take than most, while a station plays.
/// Measures whole processes, in turn.
#include "tests/support/ScriptedServer.h"
#include "tests/support/TestAuthority.h"
#include "tests/support/Text.h"
#include "tests/system/Product.h"

#include <QCoreApplication>

#include <boost/asio/connect.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket.hpp>
#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Rounds = 1500;
constexpr int UnmeasuredRounds = 100;
/// A host takes so many at once from one address.
constexpr int Sockets = 64;
constexpr int RequestsPerSecond = 200;
constexpr int Seconds = 15;

constexpr char GetRoot[] = R"({"jsonrpc":"2.0","id":1,"method":"getRows",)"
                           R"("params":{"path":"TuneIn:browse","first":0,"last":99}})";
constexpr char GetStations[]
    = R"({"jsonrpc":"2.0","id":1,"method":"getRows",)"
      R"("params":{"path":"RadioBrowser:stations?name=a","first":0,"last":99}})";

/// A client that does no more than it has to, so that the host is what is measured.
class Socket {
public:
    explicit Socket(quint16 port)
        : m_socket(m_context)
    {
        using boost::asio::ip::tcp;
        m_socket.next_layer().connect({boost::asio::ip::address_v4::loopback(), port});
        m_socket.next_layer().set_option(tcp::no_delay(true));
        m_socket.handshake("127.0.0.1:" + std::to_string(port), "/ws");
    }

    /// The response to \a request, whose id is 1.
    std::string call(const std::string &request)
    {
        m_socket.write(boost::asio::buffer(request));
        while (true) {
            m_buffer.clear();
            m_socket.read(m_buffer);
            std::string text(static_cast<const char *>(m_buffer.data().data()), m_buffer.size());
            // Notifications have no id.
            if (text.find("\"id\":1") != std::string::npos)
                return text;
        }
    }

private:
    boost::asio::io_context m_context;
    boost::beast::websocket::stream<boost::asio::ip::tcp::socket> m_socket;
    boost::beast::flat_buffer m_buffer;
};

size_t append(char *data, size_t size, size_t count, void *body)
{
    static_cast<std::string *>(body)->append(data, size * count);
    return size * count;
}

/// A GET with libcurl alone, on a connection that is kept.
class Get {
public:
    explicit Get(const QString &url)
        : m_curl(curl_easy_init())
    {
        curl_easy_setopt(m_curl, CURLOPT_URL, url.toUtf8().constData());
        curl_easy_setopt(m_curl, CURLOPT_WRITEFUNCTION, append);
        curl_easy_setopt(m_curl, CURLOPT_WRITEDATA, &m_body);
    }
    ~Get() { curl_easy_cleanup(m_curl); }

    const std::string &perform()
    {
        m_body.clear();
        curl_easy_perform(m_curl);
        return m_body;
    }

private:
    CURL *m_curl;
    std::string m_body;
};

/// Says so if \a answer has none.
bool hasRows(const std::string &answer)
{
    if (answer.find("\"title\"") != std::string::npos)
        return true;
    std::fprintf(stderr, "no rows: %s\n", answer.c_str());
    return false;
}

double at(std::vector<double> &values, int percent)
{
    const auto place = values.begin()
        + static_cast<long>(values.size() * static_cast<std::size_t>(percent) / 100);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

template <class Operation>
double milliseconds(Operation operation)
{
    const Clock::time_point begin = Clock::now();
    operation();
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// The medians of the two operations, which take turns.
template <class First, class Second>
std::pair<double, double> medians(First first, Second second)
{
    std::vector<double> firsts;
    std::vector<double> seconds;
    for (int i = 0; i < UnmeasuredRounds + Rounds; ++i) {
        const double one = milliseconds(first);
        const double other = milliseconds(second);
        if (i >= UnmeasuredRounds) {
            firsts.push_back(one);
            seconds.push_back(other);
        }
    }
    return {at(firsts, 50), at(seconds, 50)};
}

void print(const char *what, const char *floor, std::pair<double, double> times, double limit)
{
    std::printf("| %s | %s | %.3f ms | %.3f ms | %.2f | %.2f |\n", what, floor, times.first,
        times.second, times.first / times.second, limit);
}

bool measureRoot()
{
    const Product product;
    Socket socket(product.hostPort());
    if (!hasRows(socket.call(GetRoot)))
        return false;
    // What the plug-in asks for.
    const QStringList log = product.requestLog();
    const auto asked = std::find_if(log.begin(), log.end(),
        [](const QString &line) { return line.startsWith(text("GET /Browse.ashx")); });
    if (asked == log.end())
        return false;
    Get get(text("http://") + product.directoryAddress() + asked->section(QLatin1Char(' '), 1, 1));
    if (get.perform().find("Local Radio") == std::string::npos)
        return false;
    print("`getRows` of the root over a WebSocket, plug-in process, p50", "`curl_easy`",
        medians([&] { socket.call(GetRoot); }, [&] { get.perform(); }), 4);
    return true;
}

/// A server of Radio Browser, whose address is the user's choice.
ScriptedServer::Response someStations(const ScriptedServer::Request &)
{
    ScriptedServer::Response response;
    QByteArray stations;
    for (int i = 0; i < 25; ++i) {
        stations += i == 0 ? "[" : ",";
        stations += R"({"stationuuid":"960761d5-0601-11e8-ae97-5254000000)"
            + QByteArray::number(10 + i)
            + R"(","name":"Hafenlicht Jazz","url":"http://radio.test/a","url_resolved":)"
              R"("http://radio.test/a","favicon":"http://radio.test/a.png","tags":"jazz",)"
              R"("country":"Germany","codec":"MP3","bitrate":128,"hls":0,"lastcheckok":1})";
    }
    response.headers = {{"Content-Type", "application/json"}};
    response.body = stations + ']';
    return response;
}

QStringList radioBrowserAt(const QString &address)
{
    return {text("--plugin"), text(VESK_RADIOBROWSER_PLUGIN), text("--set"),
        text("settings:radiobrowser/server=") + address};
}

bool measureTls()
{
    TestAuthority authority("bench");
    const TestAuthority::Certificate files = authority.issue("radio.test");
    const ScriptedServer plainServer(someStations);
    const ScriptedServer secureServer(someStations, files.certificateFile, files.keyFile);
    // Without TLS only a server on this machine may be chosen.
    const Product plain(
        radioBrowserAt(text("http://127.0.0.1:") + QString::number(plainServer.port())));
    const Product secure(radioBrowserAt(text("https://radio.test"))
        + QStringList {text("--ca-file"), authority.file(), text("--connect-to"),
            QString::fromLatin1(secureServer.connectTo("radio.test"))});
    Socket plainSocket(plain.hostPort());
    Socket secureSocket(secure.hostPort());
    if (!hasRows(plainSocket.call(GetStations)) || !hasRows(secureSocket.call(GetStations)))
        return false;
    print("`getRows` of stations from a server over TLS, p50", "without",
        medians([&] { secureSocket.call(GetStations); }, [&] { plainSocket.call(GetStations); }),
        1.15);
    return true;
}

/// Requests of many clients at regular times, while a station plays.
bool measureMany()
{
    const Product product({text("--audio"), text("null")});
    product.rpc(text("player.play"),
        {{text("screen"), text("TuneIn:browse/uri/Search.ashx?query=trial%2001")},
            {text("row"), 0}});
    std::vector<std::unique_ptr<Socket>> sockets;
    for (int i = 0; i < Sockets; ++i) {
        sockets.push_back(std::make_unique<Socket>(product.hostPort()));
        if (!hasRows(sockets.back()->call(GetRoot)))
            return false;
    }
    std::mutex mutex;
    std::vector<double> times;
    std::vector<std::thread> clients;
    const Clock::time_point begin = Clock::now();
    for (int i = 0; i < Sockets; ++i) {
        clients.emplace_back([&, i] {
            const std::chrono::microseconds apart(1'000'000 / RequestsPerSecond);
            for (int n = i; n < RequestsPerSecond * Seconds; n += Sockets) {
                std::this_thread::sleep_until(begin + n * apart);
                const double time = milliseconds([&] { sockets[size_t(i)]->call(GetRoot); });
                const std::lock_guard lock(mutex);
                times.push_back(time);
            }
        });
    }
    for (std::thread &client : clients)
        client.join();
    print("64 WebSockets, 200 `getRows` a second, playing: p99", "p50",
        {at(times, 99), at(times, 50)}, 4);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    std::printf("| what | its floor | measured | floor | ratio | goal |\n");
    return measureRoot() && measureTls() && measureMany() ? 0 : 1;
}
