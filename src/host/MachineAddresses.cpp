// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/MachineAddresses.h"

#include <algorithm>
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>
#include <netinet/in.h>

namespace {

QString textOf(const sockaddr *address)
{
    char text[INET6_ADDRSTRLEN] = {};
    if (address->sa_family == AF_INET) {
        const auto *ipv4 = reinterpret_cast<const sockaddr_in *>(address);
        ::inet_ntop(AF_INET, &ipv4->sin_addr, text, sizeof text);
    } else if (address->sa_family == AF_INET6) {
        const auto *ipv6 = reinterpret_cast<const sockaddr_in6 *>(address);
        if (!IN6_IS_ADDR_LINKLOCAL(&ipv6->sin6_addr))
            ::inet_ntop(AF_INET6, &ipv6->sin6_addr, text, sizeof text);
    }
    return QString::fromLatin1(text);
}

} // namespace

QStringList machineAddresses()
{
    ifaddrs *first = nullptr;
    if (::getifaddrs(&first) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> all(first, &::freeifaddrs);
    QStringList addresses;
    for (const ifaddrs *entry = first; entry; entry = entry->ifa_next) {
        const bool isReachable
            = (entry->ifa_flags & IFF_UP) != 0 && (entry->ifa_flags & IFF_LOOPBACK) == 0;
        const QString text = entry->ifa_addr && isReachable ? textOf(entry->ifa_addr) : QString();
        if (!text.isEmpty() && !addresses.contains(text))
            addresses.append(text);
    }
    std::stable_partition(addresses.begin(), addresses.end(),
        [](const QString &address) { return !address.contains(QLatin1Char(':')); });
    return addresses;
}
