// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/NetworkMonitor.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

/// A folder like /sys/class/net.
class EthernetMacTest : public testing::Test {
protected:
    void add(const char *name, const QByteArray &address, const QStringList &marks,
        const QByteArray &type = "1\n")
    {
        const QDir folder(m_temporary.path());
        const QString interface = QString::fromLatin1(name);
        folder.mkpath(interface);
        for (const QString &mark : marks)
            folder.mkpath(interface + QLatin1Char('/') + mark);
        write(interface + QStringLiteral("/address"), address);
        write(interface + QStringLiteral("/type"), type);
    }

    QString mac() const { return NetworkMonitor::ethernetMac(m_temporary.path()); }

private:
    void write(const QString &name, const QByteArray &content)
    {
        QFile file(m_temporary.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir m_temporary;
};

const QStringList Device {QStringLiteral("device")};

TEST_F(EthernetMacTest, IsThatOfTheFirstWiredAdapter)
{
    add("enp3s0", "00:1A:2B:3C:4D:5E\n", Device);
    add("enp4s0", "00:00:00:00:00:01\n", Device);
    EXPECT_EQ(mac(), QStringLiteral("00:1a:2b:3c:4d:5e"));
}

TEST_F(EthernetMacTest, SkipsOtherInterfaces)
{
    add("a-bridge", "00:00:00:00:00:01\n", {});
    add("b-wlan", "00:00:00:00:00:02\n", Device + QStringList {QStringLiteral("wireless")});
    add("c-wlan", "00:00:00:00:00:03\n", Device + QStringList {QStringLiteral("phy80211")});
    add("d-ib", "00:00:00:00:00:04\n", Device, "32\n");
    add("e-zero", "00:00:00:00:00:00\n", Device);
    add("f-odd", "00:00:00\n", Device);
    EXPECT_EQ(mac(), QString());
    add("g-wired", "00:00:00:00:00:05\n", Device);
    EXPECT_EQ(mac(), QStringLiteral("00:00:00:00:00:05"));
}

TEST_F(EthernetMacTest, IsEmptyWhereThereAreNoInterfaces)
{
    EXPECT_EQ(NetworkMonitor::ethernetMac(QStringLiteral("/nonexistent")), QString());
}

} // namespace
