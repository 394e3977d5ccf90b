// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/AddressPolicy.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

namespace {

using Bytes = const unsigned char *;

constexpr int Ipv4Bits = 32;
constexpr int Ipv6Bits = 128;

bool hasPrefix(Bytes address, Bytes network, int bits)
{
    const int whole = bits / 8;
    if (std::memcmp(address, network, static_cast<std::size_t>(whole)) != 0)
        return false;
    const int rest = bits % 8;
    return rest == 0 || ((address[whole] ^ network[whole]) >> (8 - rest)) == 0;
}

struct Ipv4Network {
    unsigned char address[4];
    int bits;
    AddressKind kind;
};

/// The first network that contains the address counts.
constexpr Ipv4Network Ipv4Networks[] = {
    {{0, 0, 0, 0}, 8, AddressKind::Never}, // "this network"; Linux connects to this machine
    {{10, 0, 0, 0}, 8, AddressKind::LocalNetwork},
    {{100, 100, 100, 200}, 32, AddressKind::Never}, // a cloud's metadata service
    {{100, 64, 0, 0}, 10, AddressKind::LocalNetwork}, // carrier-grade NAT (RFC 6598)
    {{127, 0, 0, 0}, 8, AddressKind::Machine},
    {{168, 63, 129, 16}, 32, AddressKind::Never}, // a cloud's host agent
    {{169, 254, 0, 0}, 16, AddressKind::Never}, // link-local; clouds' metadata services
    {{172, 16, 0, 0}, 12, AddressKind::LocalNetwork},
    {{192, 0, 0, 0}, 24, AddressKind::Never}, // IETF protocol assignments; a metadata service
    {{192, 168, 0, 0}, 16, AddressKind::LocalNetwork},
    {{198, 18, 0, 0}, 15, AddressKind::LocalNetwork}, // benchmarking (RFC 2544)
    {{224, 0, 0, 0}, 4, AddressKind::Never}, // multicast
    {{240, 0, 0, 0}, 4, AddressKind::Never}, // reserved, broadcast
};

AddressKind kindOfIpv4(Bytes address)
{
    for (const Ipv4Network &network : Ipv4Networks) {
        if (hasPrefix(address, network.address, network.bits))
            return network.kind;
    }
    return AddressKind::Internet;
}

struct Ipv6Network {
    unsigned char address[16];
    int bits;
    AddressKind kind;
    int ipv4At = -1; ///< offset of an embedded IPv4 address, whose kind counts
};

constexpr Ipv6Network Ipv6Networks[] = {
    {{}, 128, AddressKind::Never}, // unspecified
    {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, 128, AddressKind::Machine},
    {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff}, 96, AddressKind::Never, 12}, // IPv4-mapped
    {{0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff}, 96, AddressKind::Never, 12}, // IPv4-translated
    {{}, 96, AddressKind::Never, 12}, // IPv4-compatible
    {{0x00, 0x64, 0xff, 0x9b}, 96, AddressKind::Never, 12}, // NAT64 (RFC 6052)
    {{0x00, 0x64, 0xff, 0x9b, 0x00, 0x01}, 48, AddressKind::LocalNetwork}, // local NAT64 (RFC 8215)
    {{0x01}, 64, AddressKind::Never}, // discard-only (RFC 6666)
    {{0x20, 0x01, 0x00, 0x00}, 32, AddressKind::Never}, // Teredo
    {{0x20, 0x02}, 16, AddressKind::Never, 2}, // 6to4
    {{0xfd, 0x00, 0x0e, 0xc2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x02, 0x54}, 128,
        AddressKind::Never}, // clouds' metadata services
    {{0xfd, 0x20, 0x00, 0xce, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x02, 0x54}, 128, AddressKind::Never},
    {{0xfc}, 7, AddressKind::LocalNetwork}, // unique local
    {{0xfe, 0x80}, 10, AddressKind::Never}, // link-local
    {{0xfe, 0xc0}, 10, AddressKind::LocalNetwork}, // site-local, deprecated
    {{0xff}, 8, AddressKind::Never}, // multicast
};

AddressKind kindOfIpv6(Bytes address)
{
    for (const Ipv6Network &network : Ipv6Networks) {
        if (hasPrefix(address, network.address, network.bits))
            return network.ipv4At < 0 ? network.kind : kindOfIpv4(address + network.ipv4At);
    }
    return AddressKind::Internet;
}

/// The bytes of an IPv4 or IPv6 address; null for other families.
Bytes bytesOf(const sockaddr *address)
{
    switch (address->sa_family) {
    case AF_INET:
        return reinterpret_cast<Bytes>(&reinterpret_cast<const sockaddr_in *>(address)->sin_addr);
    case AF_INET6:
        return reinterpret_cast<Bytes>(&reinterpret_cast<const sockaddr_in6 *>(address)->sin6_addr);
    default:
        return nullptr;
    }
}

int bitsOf(const sockaddr *address)
{
    return address->sa_family == AF_INET ? Ipv4Bits : Ipv6Bits;
}

/// The number of leading one bits of a netmask; 0 without a netmask.
int prefixOf(const sockaddr *mask)
{
    const Bytes bytes = mask ? bytesOf(mask) : nullptr;
    int bits = 0;
    while (bytes && bits < bitsOf(mask) && (bytes[bits / 8] >> (7 - bits % 8) & 1) != 0)
        ++bits;
    return bits;
}

/// Whether the name cannot be in the public DNS: a single label or a local domain.
bool isLocalName(const QString &name)
{
    if (!name.contains(QLatin1Char('.')))
        return true;
    for (const char *ending : {".local", ".lan", ".home.arpa", ".internal"}) {
        if (name.endsWith(QLatin1String(ending), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

AddressKind kindOfTarget(const QString &target)
{
    const QByteArray text = target.toLatin1();
    sockaddr_in ipv4 {};
    ipv4.sin_family = AF_INET;
    if (::inet_pton(AF_INET, text.constData(), &ipv4.sin_addr) == 1)
        return addressKind(reinterpret_cast<const sockaddr *>(&ipv4));
    sockaddr_in6 ipv6 {};
    ipv6.sin6_family = AF_INET6;
    if (::inet_pton(AF_INET6, text.constData(), &ipv6.sin6_addr) == 1)
        return addressKind(reinterpret_cast<const sockaddr *>(&ipv6));
    if (target.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0
        || target.endsWith(QLatin1String(".localhost"), Qt::CaseInsensitive))
        return AddressKind::Machine;
    return isLocalName(target) ? AddressKind::LocalNetwork : AddressKind::Internet;
}

/// ADDRESS of "HOST:PORT:ADDRESS:PORT", without its brackets; empty when the entry keeps the host.
QString targetOf(const QString &entry)
{
    const int portAt = entry.lastIndexOf(QLatin1Char(':'));
    if (portAt <= 0)
        return {};
    if (entry.at(portAt - 1) == QLatin1Char(']')) {
        const int open = entry.lastIndexOf(QLatin1Char('['), portAt);
        return entry.mid(open + 1, portAt - open - 2);
    }
    const int colon = entry.lastIndexOf(QLatin1Char(':'), portAt - 1);
    return entry.mid(colon + 1, portAt - colon - 1);
}

std::atomic<AddressReach> &currentReach()
{
    static std::atomic<AddressReach> reach {AddressReach::Machine};
    return reach;
}

} // namespace

OwnAddresses::OwnAddresses(std::vector<Entry> entries)
    : m_entries(std::move(entries))
{
}

OwnAddresses OwnAddresses::present()
{
    ifaddrs *first = nullptr;
    if (::getifaddrs(&first) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> list(first, &::freeifaddrs);
    std::vector<Entry> entries;
    for (const ifaddrs *it = first; it; it = it->ifa_next) {
        if (!it->ifa_addr || !bytesOf(it->ifa_addr))
            continue;
        Entry entry {{}, prefixOf(it->ifa_netmask)};
        std::memcpy(&entry.address, it->ifa_addr,
            it->ifa_addr->sa_family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6));
        entries.push_back(entry);
    }
    return OwnAddresses(std::move(entries));
}

AddressKind addressKind(const sockaddr *address)
{
    const Bytes bytes = bytesOf(address);
    if (!bytes)
        return AddressKind::Never;
    return address->sa_family == AF_INET ? kindOfIpv4(bytes) : kindOfIpv6(bytes);
}

AddressKind addressKind(const sockaddr *address, const OwnAddresses &own)
{
    const AddressKind kind = addressKind(address);
    if (kind == AddressKind::Never || kind == AddressKind::Machine)
        return kind;
    AddressKind nearest = kind;
    for (const OwnAddresses::Entry &entry : own.entries()) {
        const auto *mine = reinterpret_cast<const sockaddr *>(&entry.address);
        if (mine->sa_family != address->sa_family)
            continue;
        if (hasPrefix(bytesOf(address), bytesOf(mine), bitsOf(mine)))
            return AddressKind::Machine;
        // IPv6 only: public IPv4 networks belong to providers, with other customers' servers in
        // them. Short prefixes do not count, as a tunnel for all traffic (a prefix of 0) does not
        // make every address a neighbour.
        if (mine->sa_family == AF_INET6 && entry.prefix >= 32
            && hasPrefix(bytesOf(address), bytesOf(mine), entry.prefix))
            nearest = AddressKind::LocalNetwork;
    }
    return nearest;
}

bool AddressPolicy::allows(AddressReach reach, AddressKind kind)
{
    switch (kind) {
    case AddressKind::Internet:
        return true;
    case AddressKind::LocalNetwork:
        return reach != AddressReach::Internet;
    case AddressKind::Machine:
        return reach == AddressReach::Machine;
    case AddressKind::Never:
        break;
    }
    return false;
}

AddressReach AddressPolicy::ofConnectTo(const QStringList &connectTo)
{
    AddressReach reach = AddressReach::Internet;
    for (const QString &entry : connectTo) {
        const QString target = targetOf(entry);
        const AddressKind kind = target.isEmpty() ? AddressKind::Internet : kindOfTarget(target);
        if (kind == AddressKind::Machine)
            return AddressReach::Machine;
        if (kind == AddressKind::LocalNetwork)
            reach = AddressReach::LocalNetwork;
    }
    return reach;
}

AddressReach AddressPolicy::current()
{
    return currentReach();
}

void AddressPolicy::setCurrent(AddressReach reach)
{
    currentReach() = reach;
}
