// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/radiobrowser/RadioBrowserDns.h"

#include <QRegularExpression>

#include <algorithm>
#include <arpa/nameser.h>
#include <array>
#include <netinet/in.h>
#include <resolv.h>

namespace {

constexpr char ServiceName[] = "_api._tcp.radio-browser.info";
constexpr int MostServers = 16;
constexpr int SecondsPerNameServer = 2;
constexpr int HttpsPort = 443;

/// In the data of an SRV record: priority, weight and port, of two bytes each, then the host.
constexpr int PortOffset = 4;
constexpr int HostOffset = 6;

/// Empty for a host outside of the directory's domain: a forged answer could name any server, and
/// that one would have a valid certificate for its own name.
QString addressOf(const QString &host, int port)
{
    static const QRegularExpression ours(
        QStringLiteral("\\A([a-z0-9-]{1,63}\\.){1,4}radio-browser\\.info\\z"),
        QRegularExpression::CaseInsensitiveOption);
    if (!ours.match(host).hasMatch() || port == 0)
        return {};
    const QString address = QStringLiteral("https://") + host.toLower();
    return port == HttpsPort ? address : QStringLiteral("%1:%2").arg(address).arg(port);
}

} // namespace

QStringList lookUpRadioBrowserServers()
{
    // A state of its own, since the one that name look-ups share belongs to its thread for ever.
    struct __res_state state { };
    if (res_ninit(&state) != 0)
        return {};
    state.retrans = SecondsPerNameServer;
    state.retry = 1;
    std::array<unsigned char, 4096> message;
    const int size = res_nquery(
        &state, ServiceName, ns_c_in, ns_t_srv, message.data(), static_cast<int>(message.size()));
    res_nclose(&state);
    if (size <= 0)
        return {};
    // A longer answer is cut off, but its whole length is what is returned.
    return radioBrowserServersIn(QByteArray(reinterpret_cast<const char *>(message.data()),
        std::min(size, static_cast<int>(message.size()))));
}

QStringList radioBrowserServersIn(const QByteArray &message)
{
    ns_msg reader;
    const auto *const bytes = reinterpret_cast<const unsigned char *>(message.constData());
    if (ns_initparse(bytes, message.size(), &reader) != 0)
        return {};
    QStringList servers;
    const int count = ns_msg_count(reader, ns_s_an);
    for (int i = 0; i < count && servers.size() < MostServers; ++i) {
        ns_rr record;
        if (ns_parserr(&reader, ns_s_an, i, &record) != 0)
            break;
        if (ns_rr_type(record) != ns_t_srv || ns_rr_rdlen(record) <= HostOffset)
            continue;
        const unsigned char *const data = ns_rr_rdata(record);
        std::array<char, NS_MAXDNAME> host;
        if (dn_expand(bytes, bytes + message.size(), data + HostOffset, host.data(),
                static_cast<int>(host.size()))
            < 0)
            continue;
        const QString address = addressOf(
            QString::fromLatin1(host.data()), static_cast<int>(ns_get16(data + PortOffset)));
        if (!address.isEmpty() && !servers.contains(address))
            servers.append(address);
    }
    return servers;
}
