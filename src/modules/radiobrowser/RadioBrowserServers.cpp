// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserServers.h"

#include "api/core/ThreadCheck.h"
#include "api/core/log.h"
#include "api/web/VeskUrl.h"

#include <QThread>

#include <algorithm>
#include <iterator>
#include <random>
#include <utility>

VESK_LOGGER("CB_RadioBrowser")

namespace {

/// A name with the addresses of all servers, for which each of them has a certificate.
QString anyServer()
{
    return QStringLiteral("https://all.api.radio-browser.info");
}

bool isLoopback(const QString &host)
{
    return host == QLatin1String("localhost") || host == QLatin1String("127.0.0.1")
        || host == QLatin1String("::1");
}

/// Over plain HTTP the network could read, and change, what is searched for and played.
bool mayUse(const VeskUrl &server)
{
    const QString scheme = server.scheme().toLower();
    const QString host = server.host().toLower();
    return (scheme == QLatin1String("https") && !host.isEmpty())
        || (scheme == QLatin1String("http") && isLoopback(host));
}

} // namespace

RadioBrowserServers::RadioBrowserServers(LookUp lookUp, Now now)
    : m_lookUp(std::move(lookUp))
    , m_now(std::move(now))
{
}

RadioBrowserServers::~RadioBrowserServers()
{
    if (m_thread)
        m_thread->wait();
}

void RadioBrowserServers::setOnly(const QString &server)
{
    VESK_ASSERT_OWN_THREAD();
    QString address = server.trimmed();
    while (address.endsWith(QLatin1Char('/')))
        address.chop(1);
    if (!mayUse(VeskUrl(address))) {
        VESK_ERROR("not a server that can be used: '"
            << VeskUrl::displayText(address) << "', it has to be https, or on this machine");
        return;
    }
    m_servers = QStringList(address);
    m_goodUntil = Clock::time_point::max();
}

void RadioBrowserServers::find(Found found)
{
    VESK_ASSERT_OWN_THREAD();
    if (!m_thread && m_now() < m_goodUntil)
        return found(usable());
    m_waiting.push_back(std::move(found));
    if (!m_thread)
        startLookUp();
}

void RadioBrowserServers::noteFailed(const QString &server)
{
    VESK_ASSERT_OWN_THREAD();
    m_failedUntil.insert(server, m_now() + PenaltyTime);
}

void RadioBrowserServers::startLookUp()
{
    const auto result = std::make_shared<QStringList>();
    m_thread.reset(QThread::create([lookUp = m_lookUp, result] {
        veskSetThreadName(QStringLiteral("RadioBrowserDns"));
        *result = lookUp();
    }));
    connect(m_thread.get(), &QThread::finished, this, [this, result] { takeLookUp(*result); });
    m_thread->start();
}

void RadioBrowserServers::takeLookUp(QStringList servers)
{
    m_thread->wait(); // it may still be on its way out
    m_thread.reset();
    const bool failed = servers.isEmpty();
    if (failed) {
        VESK_WARN("the directory's servers could not be looked up");
        servers.append(anyServer());
    }
    std::shuffle(servers.begin(), servers.end(), std::mt19937(std::random_device()()));
    m_servers = servers;
    m_goodUntil = m_now() + (failed ? FailedLookUpLifetime : LookUpLifetime);
    for (auto it = m_failedUntil.begin(); it != m_failedUntil.end();)
        it = m_servers.contains(it.key()) ? std::next(it) : m_failedUntil.erase(it);
    for (const Found &found : std::exchange(m_waiting, {}))
        found(usable());
}

/// When all of them have failed, the fault is most likely this machine's network, so the next
/// request tries them again.
QStringList RadioBrowserServers::usable()
{
    QStringList servers;
    std::copy_if(m_servers.begin(), m_servers.end(), std::back_inserter(servers),
        [this, now = m_now()](const QString &server) {
            const auto failed = m_failedUntil.constFind(server);
            return failed == m_failedUntil.constEnd() || failed.value() <= now;
        });
    return servers.isEmpty() ? m_servers : servers;
}
