// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "ctl/KnownHosts.h"

#include "ctl/HostCertificate.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace {

using testing::HasSubstr;

const QString Host = QStringLiteral("https://radio.local:8765/");
const QByteArray Token = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJK-_0123";
const QString Key(64, QLatin1Char('a'));

class KnownHostsTest : public testing::Test {
protected:
    void write(const QByteArray &content) const
    {
        QDir(m_folder.path()).mkpath(QStringLiteral("vesk"));
        QFile file(m_file);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
    }

    const QTemporaryDir m_folder;
    const QString m_file = m_folder.filePath(QStringLiteral("vesk/hosts.json"));
    KnownHosts m_hosts {m_file};
};

TEST_F(KnownHostsTest, KnowsNothingOfOtherHosts)
{
    const auto access = m_hosts.find(Host);
    ASSERT_TRUE(access);
    EXPECT_EQ(access->token, QByteArray());
    EXPECT_EQ(access->key, QString());
    EXPECT_FALSE(QFile::exists(m_file));
}

TEST_F(KnownHostsTest, KeepsWhatItIsGivenUntilItShallForget)
{
    ASSERT_TRUE(m_hosts.keep(Host, {Token, Key, QStringLiteral("AA:BB")}));
    ASSERT_TRUE(m_hosts.keep(QStringLiteral("http://b/"), {Token, {}, {}}));
    const KnownHosts again(m_file);
    EXPECT_EQ(again.find(Host)->token, Token);
    EXPECT_EQ(again.find(Host)->key, Key);
    EXPECT_EQ(again.find(Host)->fingerprint, QStringLiteral("AA:BB"));
    EXPECT_EQ(again.find(QStringLiteral("http://b/"))->token, Token);
    EXPECT_EQ(again.find(QStringLiteral("http://b/"))->key, QString());
    ASSERT_TRUE(m_hosts.forget(Host));
    ASSERT_TRUE(m_hosts.forget(QStringLiteral("https://never.known/")));
    EXPECT_EQ(again.find(Host)->token, QByteArray());
    EXPECT_EQ(again.find(QStringLiteral("http://b/"))->token, Token);
}

TEST_F(KnownHostsTest, OnlyTheirOwnerMayReadThem)
{
    ASSERT_TRUE(m_hosts.keep(Host, {Token, Key, {}}));
    struct stat status { };
    ASSERT_EQ(::stat(QFile::encodeName(m_file).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const QString folder = m_folder.filePath(QStringLiteral("vesk"));
    ASSERT_EQ(::stat(QFile::encodeName(folder).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(KnownHostsTest, DamagedFilesAreToldAndLeftAlone)
{
    const QByteArray entry = R"({"hosts":{"https://radio.local:8765/":)";
    const QByteArray contents[] {
        "",
        "{",
        "[]",
        "null",
        R"({"hosts":[]})",
        R"({"hosts":7})",
        entry + "7}}",
        entry + "{}}}",
        entry + R"({"token":"short"}}})",
        entry + R"({"token":["a"]}}})",
        // Never "any certificate will do".
        entry + R"({"token":")" + Token + R"(","key":"short"}}})",
        entry + R"({"token":")" + Token + "\\n\"}}}",
        QByteArray(2 * 1024 * 1024, ' '),
    };
    for (const QByteArray &content : contents) {
        write(content);
        const auto access = m_hosts.find(Host);
        ASSERT_FALSE(access) << content.left(100).constData();
        EXPECT_THAT(access.error().toStdString(), HasSubstr(m_file.toStdString()));
    }
    write("{");
    EXPECT_FALSE(m_hosts.prepare());
    EXPECT_FALSE(m_hosts.keep(Host, {Token, Key, {}}));
    QFile file(m_file);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(file.readAll(), "{");
}

TEST_F(KnownHostsTest, WithoutAFileNothingIsKept)
{
    KnownHosts none {QString()};
    ASSERT_TRUE(none.find(Host));
    EXPECT_FALSE(none.prepare());
    EXPECT_FALSE(none.keep(Host, {Token, Key, {}}));
}

TEST(TypedFingerprintTest, AcceptsWhatPeopleCopy)
{
    const QString whole = typedFingerprint(QString(64, QLatin1Char('a')));
    EXPECT_EQ(whole.size(), 95);
    EXPECT_TRUE(whole.startsWith(QLatin1String("AA:AA:")));
    EXPECT_EQ(typedFingerprint(whole), whole);
    EXPECT_EQ(typedFingerprint(whole.toLower().replace(QLatin1Char(':'), QLatin1Char(' '))), whole);
    for (const QString &bad : {QString(), QString(63, QLatin1Char('a')),
             QString(65, QLatin1Char('a')), QString(64, QLatin1Char('g'))})
        EXPECT_EQ(typedFingerprint(bad), QString()) << bad.toStdString();
}

TEST(FingerprintLinesTest, AreTwoOfSixteenBytes)
{
    const QString whole = typedFingerprint(QString(64, QLatin1Char('a')));
    const QStringList lines = fingerprintLines(whole);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines.first().count(QLatin1String("AA:")), 16);
    EXPECT_EQ(lines.join(QString()), whole);
    EXPECT_EQ(fingerprintLines(QStringLiteral("AB")).join(QString()), QStringLiteral("AB"));
}

TEST(HostCertificateTest, NothingIsKnownOfWhatIsNoCertificate)
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("0"), QByteArray(1000, '0')}) {
        EXPECT_EQ(HostCertificate::of(bytes).fingerprint, QString());
        EXPECT_EQ(HostCertificate::of(bytes).key, QString());
    }
}

} // namespace
