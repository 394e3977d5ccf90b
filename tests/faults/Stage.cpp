// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Stage.h"

#include "tests/support/ScriptedServer.h"
#include "tests/support/TestAuthority.h"
#include "tests/support/Text.h"

#include <QFile>

#include <algorithm>
#include <csignal>

namespace {

QString connectTo(const char *host, const char *port, quint16 to)
{
    return text(host) + text(":") + text(port) + text(":127.0.0.1:") + QString::number(to);
}

/// Beside the fault every site has a healthy stream.
Pages withHealthyStream(Pages pages)
{
    pages["/healthy"] = {{script::head(), script::live(media::mp3())}};
    return pages;
}

} // namespace

/// https://safe.test/ with a certificate of its own, which redirects to plain HTTP.
class SafeServer {
public:
    QStringList arguments() const
    {
        return {text("--ca-file"), m_authority.file(), text("--connect-to"),
            QString::fromLatin1(m_server.connectTo("safe.test"))};
    }

private:
    TestAuthority m_authority {"faults"};
    const TestAuthority::Certificate m_certificate = m_authority.issue("safe.test");
    const ScriptedServer m_server {[](const ScriptedServer::Request &) {
                                       ScriptedServer::Response response;
                                       response.code = 302;
                                       response.headers = {{"Location", "http://radio.test/"}};
                                       return response;
                                   },
        m_certificate.certificateFile, m_certificate.keyFile};
};

Stage::Stage(const Site &site, const QString &folder, const QStringList &more)
    : m_wav(folder + text("/out.wav"))
    , m_server(withHealthyStream(site.pages))
    , m_moved(site.moved)
    , m_safe(site.safe ? std::make_unique<SafeServer>() : nullptr)
    , m_product(arguments(folder, more))
{
}

Stage::~Stage() = default;

QStringList Stage::arguments(const QString &folder, const QStringList &more) const
{
    QStringList all {text("--plugin"), text(STREAMS_PLUGIN), text("--audio"), text("wav:") + m_wav,
        text("--log-file"), folder + text("/host.log"), text("--connect-to"),
        connectTo("radio.test", "80", m_server.port()), text("--connect-to"),
        connectTo("moved.test", "80", m_moved.port()),
        // Nothing listens on the first port.
        text("--connect-to"), connectTo("refused.test", "80", 1),
        // A label of more than 63 letters (RFC 1035, 2.3.4) never reaches a name server.
        text("--connect-to"),
        text("nameless.test:80:") + QString(64, QLatin1Char('a')) + text(".test:80")};
    if (m_safe)
        all += m_safe->arguments();
    if (!more.contains(text("--log-level")))
        all += {text("--log-level"), text("debug")};
    return all + more;
}

void Stage::play(const Site &site, const HostLink &link) const
{
    if (!site.search)
        return play(site.url, site.live, link);
    link.call("player.play",
        {{text("screen"), text("TuneIn:browse/uri/Search.ashx?query=") + text(site.search)},
            {text("row"), 0}},
        40000);
}

void Stage::play(const QByteArray &url, bool live, const HostLink &link) const
{
    const QString screen = text("Streams:play?live=") + text(live ? "true" : "false")
        + text("&url=") + QString::fromLatin1(url.toPercentEncoding());
    link.call("player.play", {{text("screen"), screen}, {text("row"), 0}}, 10000);
}

void Stage::setFault(const QByteArray &fault)
{
    look();
    m_product.setFault(fault);
}

void Stage::signalChildren(int number, const QByteArray &name)
{
    for (const qint64 child : childrenOf(pid())) {
        QFile command(QStringLiteral("/proc/%1/cmdline").arg(child));
        if (command.open(QIODevice::ReadOnly) && command.readAll().contains(name))
            ::kill(static_cast<pid_t>(child), number);
    }
}

std::vector<Clock::time_point> Stage::arrivals() const
{
    std::vector<Clock::time_point> times = m_streamRequests;
    for (const StreamingServer *server : {&m_server, &m_moved}) {
        for (const StreamingServer::Arrival &arrival : server->arrivals())
            times.push_back(arrival.at);
    }
    std::sort(times.begin(), times.end());
    return times;
}

std::vector<Clock::time_point> Stage::faults() const
{
    std::vector<Clock::time_point> times = m_faults;
    for (const StreamingServer *server : {&m_server, &m_moved}) {
        const std::vector<Clock::time_point> more = server->faults();
        times.insert(times.end(), more.begin(), more.end());
    }
    std::sort(times.begin(), times.end());
    return times;
}

bool Stage::wasAskedFor(const std::vector<QByteArray> &paths) const
{
    const std::vector<StreamingServer::Arrival> all = m_server.arrivals();
    return std::any_of(all.begin(), all.end(), [&](const StreamingServer::Arrival &arrival) {
        return std::find(paths.begin(), paths.end(), arrival.path) != paths.end();
    });
}

void Stage::look()
{
    const int requests = m_product.requestLog().filter(text(" /stream/")).size();
    while (static_cast<int>(m_streamRequests.size()) < requests)
        m_streamRequests.push_back(Clock::now());
}

std::string Stage::end()
{
    const int status = m_product.stopHost();
    return status == 0 ? std::string() : "the host ended with " + std::to_string(status);
}

void Stage::kill()
{
    m_product.killHost();
    m_product.waitForHostsEnd();
}
