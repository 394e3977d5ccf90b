// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/AddressPolicy.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/un.h>

namespace {

sockaddr_storage addressOf(const char *text)
{
    sockaddr_storage storage {};
    auto *ipv4 = reinterpret_cast<sockaddr_in *>(&storage);
    auto *ipv6 = reinterpret_cast<sockaddr_in6 *>(&storage);
    if (::inet_pton(AF_INET, text, &ipv4->sin_addr) == 1) {
        ipv4->sin_family = AF_INET;
    } else {
        storage = {};
        EXPECT_EQ(::inet_pton(AF_INET6, text, &ipv6->sin6_addr), 1) << text;
        ipv6->sin6_family = AF_INET6;
    }
    return storage;
}

AddressKind kindOf(const char *text, const OwnAddresses &own = {})
{
    const sockaddr_storage storage = addressOf(text);
    return addressKind(reinterpret_cast<const sockaddr *>(&storage), own);
}

} // namespace

TEST(AddressPolicyTest, ClassifiesAddresses)
{
    const struct {
        AddressKind kind;
        const char *address;
    } rows[] = {
        {AddressKind::Internet, "1.1.1.1"},
        {AddressKind::Internet, "9.255.255.255"},
        {AddressKind::Internet, "11.0.0.0"},
        {AddressKind::Internet, "100.63.255.255"},
        {AddressKind::Internet, "100.128.0.0"},
        {AddressKind::Internet, "126.255.255.255"},
        {AddressKind::Internet, "128.0.0.0"},
        {AddressKind::Internet, "169.253.255.255"},
        {AddressKind::Internet, "169.255.0.0"},
        {AddressKind::Internet, "172.15.255.255"},
        {AddressKind::Internet, "172.32.0.0"},
        {AddressKind::Internet, "192.167.255.255"},
        {AddressKind::Internet, "192.169.0.0"},
        {AddressKind::Internet, "223.255.255.255"},
        {AddressKind::Internet, "2a00:1450:4001:81b::200e"},
        {AddressKind::Internet, "2001:1::1"},
        // An IPv4 address within IPv6 counts: mapped, NAT64 (RFC 6052) and 6to4 (RFC 3056).
        {AddressKind::Internet, "::ffff:8.8.8.8"},
        {AddressKind::Internet, "64:ff9b::8.8.8.8"},
        {AddressKind::Internet, "2002:808:808::1"},
        // Private networks (RFC 1918), the shared address space (RFC 6598) and benchmarking (RFC
        // 2544).
        {AddressKind::LocalNetwork, "10.0.0.0"},
        {AddressKind::LocalNetwork, "10.255.255.255"},
        {AddressKind::LocalNetwork, "100.64.0.0"},
        {AddressKind::LocalNetwork, "100.127.255.255"},
        {AddressKind::LocalNetwork, "172.16.0.0"},
        {AddressKind::LocalNetwork, "172.31.255.255"},
        {AddressKind::LocalNetwork, "192.168.0.1"},
        {AddressKind::LocalNetwork, "192.168.255.255"},
        {AddressKind::LocalNetwork, "198.19.255.255"},
        // Unique local addresses (RFC 4193), and the former site-local ones.
        {AddressKind::LocalNetwork, "fc00::1"},
        {AddressKind::LocalNetwork, "fdff:ffff::1"},
        {AddressKind::LocalNetwork, "fec0::1"},
        {AddressKind::LocalNetwork, "::ffff:192.168.1.1"},
        {AddressKind::LocalNetwork, "::ffff:0:10.1.2.3"},
        {AddressKind::LocalNetwork, "64:ff9b::10.0.0.1"},
        // A network's own NAT64 prefix (RFC 8215).
        {AddressKind::LocalNetwork, "64:ff9b:1::1"},
        {AddressKind::LocalNetwork, "2002:c0a8:101::1"},
        {AddressKind::Machine, "127.0.0.1"},
        {AddressKind::Machine, "127.255.255.254"},
        {AddressKind::Machine, "::1"},
        {AddressKind::Machine, "::ffff:127.0.0.1"},
        {AddressKind::Machine, "::127.0.0.1"},
        {AddressKind::Machine, "64:ff9b::127.0.0.1"},
        {AddressKind::Machine, "2002:7f00:1::"},
        // Besides reserved, link-local and multicast addresses: the metadata services of clouds.
        {AddressKind::Never, "0.0.0.0"},
        {AddressKind::Never, "0.1.2.3"},
        {AddressKind::Never, "100.100.100.200"},
        {AddressKind::Never, "168.63.129.16"},
        {AddressKind::Never, "169.254.0.0"},
        {AddressKind::Never, "169.254.169.254"},
        {AddressKind::Never, "169.254.255.255"},
        {AddressKind::Never, "192.0.0.192"},
        {AddressKind::Never, "224.0.0.1"},
        {AddressKind::Never, "239.255.255.250"},
        {AddressKind::Never, "240.0.0.1"},
        {AddressKind::Never, "255.255.255.255"},
        {AddressKind::Never, "::"},
        {AddressKind::Never, "::ffff:0.0.0.0"},
        {AddressKind::Never, "::ffff:169.254.169.254"},
        {AddressKind::Never, "::169.254.169.254"},
        {AddressKind::Never, "64:ff9b::169.254.169.254"},
        {AddressKind::Never, "2002:a9fe:a9fe::1"},
        {AddressKind::Never, "100::1"},
        {AddressKind::Never, "2001::1"},
        {AddressKind::Never, "fd00:ec2::254"},
        {AddressKind::Never, "fd20:ce::254"},
        {AddressKind::Never, "fe80::1"},
        {AddressKind::Never, "febf:ffff::1"},
        {AddressKind::Never, "ff02::1"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(kindOf(row.address), row.kind) << row.address;
}

TEST(AddressPolicyTest, OtherFamiliesAreNeverConnectedTo)
{
    sockaddr_un unixAddress {};
    unixAddress.sun_family = AF_UNIX;
    EXPECT_EQ(addressKind(reinterpret_cast<const sockaddr *>(&unixAddress)), AddressKind::Never);
}

TEST(AddressPolicyTest, KnowsTheMachinesOwnAddressesAndItsNeighbours)
{
    const OwnAddresses own({{addressOf("203.0.113.7"), 24}, {addressOf("2a02:8071:1:2::7"), 64},
        {addressOf("2001:db8::1"), 0}, {addressOf("192.168.1.7"), 24}, {addressOf("fe80::7"), 64}});
    EXPECT_EQ(kindOf("203.0.113.7", own), AddressKind::Machine);
    // A public IPv4 neighbour may be another customer of the same provider.
    EXPECT_EQ(kindOf("203.0.113.8", own), AddressKind::Internet);
    EXPECT_EQ(kindOf("192.168.1.7", own), AddressKind::Machine);
    EXPECT_EQ(kindOf("192.168.1.8", own), AddressKind::LocalNetwork);
    EXPECT_EQ(kindOf("2a02:8071:1:2::7", own), AddressKind::Machine);
    EXPECT_EQ(kindOf("2a02:8071:1:2::8", own), AddressKind::LocalNetwork);
    EXPECT_EQ(kindOf("2a02:8071:1:3::8", own), AddressKind::Internet);
    EXPECT_EQ(kindOf("fe80::7", own), AddressKind::Never);
    EXPECT_EQ(kindOf("127.0.0.1", own), AddressKind::Machine);
}

TEST(AddressPolicyTest, SeesThisMachinesLoopbackInterface)
{
    const OwnAddresses own = OwnAddresses::present();
    const auto isLoopback = [](const OwnAddresses::Entry &entry) {
        const auto *ipv4 = reinterpret_cast<const sockaddr_in *>(&entry.address);
        return ipv4->sin_family == AF_INET && ipv4->sin_addr.s_addr == htonl(INADDR_LOOPBACK)
            && entry.prefix == 8;
    };
    EXPECT_TRUE(std::any_of(own.entries().begin(), own.entries().end(), isLoopback));
}

TEST(AddressPolicyTest, EachReachIncludesTheOneBeforeAndNoneIncludesNever)
{
    const AddressReach reaches[]
        = {AddressReach::Internet, AddressReach::LocalNetwork, AddressReach::Machine};
    const AddressKind kinds[]
        = {AddressKind::Internet, AddressKind::LocalNetwork, AddressKind::Machine};
    for (int reach = 0; reach < 3; ++reach) {
        for (int kind = 0; kind < 3; ++kind)
            EXPECT_EQ(AddressPolicy::allows(reaches[reach], kinds[kind]), kind <= reach);
        EXPECT_FALSE(AddressPolicy::allows(reaches[reach], AddressKind::Never));
    }
}

TEST(AddressPolicyTest, ServicesInsideMayNameAddressesInside)
{
    const struct {
        AddressReach reach;
        QStringList connectTo;
    } rows[] = {
        {AddressReach::Internet, {}},
        {AddressReach::Internet, {QStringLiteral("a.example:80:1.1.1.1:8080")}},
        {AddressReach::Internet, {QStringLiteral("a.example:80:b.example:8080")}},
        {AddressReach::Internet, {QStringLiteral("a.example:80::8080")}},
        {AddressReach::Internet, {QStringLiteral("::169.254.169.254:80")}},
        {AddressReach::Internet, {QStringLiteral("nonsense")}},
        {AddressReach::Internet, {QString()}},
        {AddressReach::LocalNetwork, {QStringLiteral("a.example:80:192.168.1.5:8080")}},
        {AddressReach::LocalNetwork, {QStringLiteral("a.example:80:nas:8080")}},
        {AddressReach::LocalNetwork, {QStringLiteral("a.example:80:nas.LOCAL:8080")}},
        {AddressReach::LocalNetwork, {QStringLiteral("::[fd12::1]:80")}},
        {AddressReach::Machine, {QStringLiteral("a.example:80:127.0.0.1:8080")}},
        {AddressReach::Machine, {QStringLiteral("::127.0.0.1:")}},
        {AddressReach::Machine, {QStringLiteral("[::2]:80:[::1]:8080")}},
        {AddressReach::Machine, {QStringLiteral("a.example:80:LocalHost:8080")}},
        {AddressReach::Machine,
            {QStringLiteral("a.example:80:1.1.1.1:8080"), QStringLiteral("b.example:80:[::1]:1"),
                QStringLiteral("c.example:80:10.0.0.1:1")}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(AddressPolicy::ofConnectTo(row.connectTo), row.reach)
            << qPrintable(row.connectTo.join(QLatin1Char(' ')));
}
