// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/http/HttpRules.h"

#include <QList>

#include <algorithm>
#include <arpa/inet.h>
#include <optional>

namespace {

using Address = std::array<quint8, 16>;

constexpr Address Mapped {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 0, 0, 0, 0};
constexpr int MappedBits = 96;

std::optional<Address> addressOf(const QByteArray &text)
{
    Address address = Mapped;
    if (::inet_pton(AF_INET, text.constData(), &address[12]) == 1
        || ::inet_pton(AF_INET6, text.constData(), address.data()) == 1)
        return address;
    return std::nullopt;
}

/// \a host in lower case without ":PORT", if it has this port.
QByteArray nameIn(const QByteArray &host, quint16 port)
{
    QByteArray name = host.toLower();
    const QByteArray suffix = ":" + QByteArray::number(port);
    if (name.endsWith(suffix))
        name.chop(suffix.size());
    return name;
}

/// \a host in lower case without any port.
QByteArray nameWithoutPort(const QByteArray &host)
{
    const QByteArray name = host.toLower();
    const int colon = name.lastIndexOf(':');
    return colon > name.lastIndexOf(']') ? name.left(colon) : name;
}

} // namespace

Result<AddressRange, QString> AddressRange::parse(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const int slash = bytes.indexOf('/');
    const QByteArray name = slash < 0 ? bytes : bytes.left(slash);
    const auto address = addressOf(name);
    const bool isIpv6 = name.contains(':');
    const int most = isIpv6 ? 128 : 32;
    bool ok = true;
    const int bits = slash < 0 ? most : bytes.mid(slash + 1).toInt(&ok);
    if (!address || !ok || bits < 0 || bits > most)
        return failure(QStringLiteral("\"%1\" is no ADDRESS or ADDRESS/BITS").arg(text));
    AddressRange range;
    range.m_address = *address;
    range.m_bits = isIpv6 ? bits : MappedBits + bits;
    return range;
}

bool AddressRange::contains(const QByteArray &address) const
{
    const auto other = addressOf(address);
    if (!other)
        return false;
    for (int bit = 0; bit < m_bits; ++bit) {
        const auto byte = static_cast<std::size_t>(bit / 8);
        if (((m_address[byte] ^ (*other)[byte]) >> (7 - bit % 8)) & 1)
            return false;
    }
    return true;
}

QByteArray networkOf(const QByteArray &address)
{
    constexpr int NetworkSize = 8;
    const auto bytes = address.contains(':') ? addressOf(address) : std::nullopt;
    if (!bytes)
        return address;
    return QByteArray(reinterpret_cast<const char *>(bytes->data()), NetworkSize).toHex() + "::/64";
}

bool isLoopbackAddress(const QByteArray &address)
{
    return address == "::1" || (address.startsWith("127.") && addressOf(address));
}

bool isLoopbackHost(const QByteArray &host, quint16 port)
{
    const QByteArray name = nameIn(host, port);
    return name == "127.0.0.1" || name == "localhost" || name == "[::1]";
}

bool isMachineHost(
    const QByteArray &host, quint16 port, const QByteArray &address, const QByteArray &machine)
{
    const QByteArray name = nameIn(host, port);
    const QByteArray literal = address.contains(':') ? "[" + address + "]" : address;
    const QByteArray own = machine.toLower();
    return name == literal || (!own.isEmpty() && (name == own || name == own + ".local"));
}

bool isAllowedHost(const QByteArray &host, const QVector<QByteArray> &hosts)
{
    const QByteArray whole = host.toLower();
    const QByteArray name = nameWithoutPort(host);
    return std::any_of(hosts.begin(), hosts.end(),
        [&](const QByteArray &allowed) { return allowed == whole || allowed == name; });
}

bool isSameOrigin(const QByteArray &origin, const QByteArray &host, bool isSecure)
{
    return origin.toLower() == (isSecure ? "https://" : "http://") + host.toLower();
}

bool isJsonContentType(const QByteArray &contentType)
{
    return contentType.split(';').first().trimmed().toLower() == "application/json";
}

QByteArray forwardedClient(
    const QByteArray &peer, const QByteArray &forwardedFor, const QVector<AddressRange> &proxies)
{
    const QList<QByteArray> hops = forwardedFor.split(',');
    for (auto hop = hops.crbegin(); hop != hops.crend(); ++hop) {
        const QByteArray address = hop->trimmed();
        if (!addressOf(address))
            return peer;
        const bool isProxy = std::any_of(proxies.begin(), proxies.end(),
            [&](const AddressRange &range) { return range.contains(address); });
        if (!isProxy)
            return address;
    }
    return peer;
}

QByteArray withoutBasePath(const QByteArray &path, const QByteArray &basePath)
{
    if (!basePath.isEmpty() && path.startsWith(basePath + "/"))
        return path.mid(basePath.size());
    return path;
}

QByteArray tokenIn(const QByteArray &cookie, const QByteArray &authorization)
{
    constexpr int SchemeSize = 7;
    if (authorization.left(SchemeSize).toLower() == "bearer ")
        return authorization.mid(SchemeSize).trimmed();
    for (const QByteArray &pair : cookie.split(';')) {
        const QByteArray trimmed = pair.trimmed();
        if (trimmed.startsWith("vesk-token="))
            return trimmed.mid(trimmed.indexOf('=') + 1);
    }
    return {};
}

bool isOpenPath(const QByteArray &path)
{
    return path == "/pair" || path.startsWith("/pair/");
}

bool isStrictHead(const QByteArray &head)
{
    for (int i = 0; i < head.size(); ++i) {
        const char before = i > 0 ? head.at(i - 1) : '\0';
        const char next = i + 1 < head.size() ? head.at(i + 1) : '\0';
        switch (head.at(i)) {
        case '\0':
            return false;
        case '\r':
            if (next != '\n' && i + 1 < head.size())
                return false;
            break;
        case '\n':
            if (before != '\r' || next == ' ' || next == '\t')
                return false;
            break;
        default:
            break;
        }
    }
    return true;
}
