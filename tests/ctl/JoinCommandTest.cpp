// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"
#include "ctl/HostCertificate.h"
#include "ctl/KnownHosts.h"
#include "tests/ctl/FakeHost.h"

#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <pty.h>
#include <unistd.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const QByteArray Token = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJK-_0123";
const QByteArray Paired
    = R"({"device":{"id":"d1","name":"laptop","role":"listener"},"token":")" + Token + "\"}";

/// A terminal on which something was typed already.
class Keyboard {
public:
    explicit Keyboard(const QByteArray &typed)
    {
        EXPECT_EQ(::openpty(&m_terminal, &m_programs, nullptr, nullptr, nullptr), 0);
        EXPECT_EQ(::write(m_terminal, typed.constData(), static_cast<size_t>(typed.size())),
            typed.size());
    }
    ~Keyboard()
    {
        ::close(m_programs);
        ::close(m_terminal);
    }

    Keyboard(const Keyboard &) = delete;
    Keyboard &operator=(const Keyboard &) = delete;

    int descriptor() const { return m_programs; }

private:
    int m_terminal = -1;
    int m_programs = -1; ///< the end that programs open
};

class JoinCommandTest : public testing::Test {
protected:
    JoinCommandTest()
    {
        m_around.knownHosts = m_folder.filePath(QStringLiteral("hosts.json"));
        m_host.setPairing(200, Paired);
    }

    Outcome join(const char *arguments, const QByteArray &typed = {})
    {
        const Keyboard keyboard(typed);
        m_around.keyboard = typed.isEmpty() ? -1 : keyboard.descriptor();
        QStringList line {QStringLiteral("--host"), m_host.url(), QStringLiteral("join")};
        line += words(arguments);
        return run(QString(), line, m_around);
    }
    HostAccess kept() const
    {
        const auto access = KnownHosts(m_around.knownHosts).find(m_host.url());
        return access ? *access : HostAccess();
    }
    QVariantHash sent() const
    {
        VeskError error;
        return VeskJson::parse(m_host.posted().value(0), error).toHash();
    }

    TestAuthority m_authority {"Fake authority"};
    FakeHost m_host {
        m_authority.issue("localhost"), {{QStringLiteral("player.state"), R"("result":{})"}}};
    const QTemporaryDir m_folder;
    Surroundings m_around;
};

TEST_F(JoinCommandTest, PairsOnceTheCertificateIsConfirmed)
{
    const Outcome outcome = join("123456 laptop", "y\n");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.out,
        "paired with " + m_host.url().toStdString()
            + " as a listener, under the name \"laptop\"\n");
    EXPECT_THAT(outcome.errors,
        AllOf(HasSubstr("Its fingerprint is:\n    "),
            HasSubstr(
                fingerprintLines(kept().fingerprint).join(QLatin1String("\n    ")).toStdString()
                + "\nIs that the one"),
            HasSubstr("? [y/N] ")));
    EXPECT_EQ(sent(),
        (QVariantHash {{QStringLiteral("code"), QStringLiteral("123456")},
            {QStringLiteral("name"), QStringLiteral("laptop")}, {QStringLiteral("bearer"), true}}));
    EXPECT_EQ(kept().token, Token);
    EXPECT_EQ(kept().fingerprint.size(), 95);
}

TEST_F(JoinCommandTest, LaterCallsUseTheTokenAndTheCertificate)
{
    ASSERT_EQ(join("123456", "yes\n").status, 0);
    m_host.setToken(Token);
    const auto status = [this] { return run(m_host.url(), {QStringLiteral("status")}, m_around); };
    EXPECT_EQ(status().status, 0);
    m_host.setCertificate(m_authority.issue("localhost"));
    EXPECT_THAT(status().errors, HasSubstr("has changed"));
}

TEST_F(JoinCommandTest, PairingAgainTakesTheNewCertificate)
{
    ASSERT_EQ(join("123456", "y\n").status, 0);
    const QString former = kept().key;
    m_host.setCertificate(m_authority.issue("localhost"));
    ASSERT_EQ(join("654321", "y\n").status, 0);
    EXPECT_NE(kept().key, former);
}

TEST_F(JoinCommandTest, SendsNothingUnlessTheCertificateIsConfirmed)
{
    for (const char *typed : {"n\n", "\n", "no\n", "yesterday\n", "\x04"}) {
        const Outcome outcome = join("123456", typed);
        EXPECT_EQ(outcome.status, 1) << typed;
        EXPECT_THAT(outcome.errors, HasSubstr("not paired; nothing was sent")) << typed;
    }
    const Outcome nobody = join("123456");
    EXPECT_EQ(nobody.status, 1);
    EXPECT_THAT(nobody.errors, HasSubstr("say with --fingerprint"));
    EXPECT_THAT(m_host.posted(), IsEmpty());
    EXPECT_EQ(kept().token, QByteArray());
}

TEST_F(JoinCommandTest, ANamedFingerprintIsNotAskedAbout)
{
    ASSERT_EQ(join("123456", "y\n").status, 0);
    const std::string fingerprint = kept().fingerprint.toLower().toStdString();
    EXPECT_EQ(join(("123456 --fingerprint " + fingerprint).c_str()).status, 0);
    m_host.setCertificate(m_authority.issue("localhost"));
    const Outcome other = join(("123456 --fingerprint " + fingerprint).c_str());
    EXPECT_EQ(other.status, 1);
    EXPECT_THAT(other.errors, HasSubstr("has another certificate, with the fingerprint"));
    EXPECT_EQ(m_host.posted().size(), 2);
}

TEST_F(JoinCommandTest, WithoutANameTheDeviceIsCalledLikeTheMachine)
{
    ASSERT_EQ(join("123456", "y\n").status, 0);
    EXPECT_EQ(sent().value(QStringLiteral("name")), QSysInfo::machineHostName());
    ASSERT_EQ(join("123456 Kitchen tablet", "y\n").status, 0);
    EXPECT_THAT(m_host.posted().value(1).toStdString(), HasSubstr(R"("name":"Kitchen tablet")"));
}

TEST_F(JoinCommandTest, PrintsJsonWithoutTheToken)
{
    const Outcome outcome = join("123456 --json", "y\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out,
        R"({"device":{"id":"d1","name":"laptop","role":"listener"},"fingerprint":")"
            + kept().fingerprint.toStdString() + R"(","host":")" + m_host.url().toStdString()
            + "\"}\n");
    EXPECT_THAT(outcome.out + outcome.errors, Not(HasSubstr(Token.toStdString())));
}

TEST_F(JoinCommandTest, EveryRefusalIsToldInWords)
{
    const struct {
        unsigned status;
        const char *body;
        const char *text;
        int exit;
    } cases[] {
        {403, R"({"error":"wrongCode","left":3})", "that is not the code; attempts left: 3", 1},
        {403, R"({"error":"ended"})", "it was the last attempt", 1},
        {409, R"({"error":"closed"})", "shows no code now", 1},
        {400, R"({"error":"invalid"})", "does not take that name", 1},
        {503, R"({"error":"notSaved"})", "could not save the device", 1},
        {429, "", "too many attempts", 1},
        {404, "<html>", "no vesk-host (HTTP code 404)", 3},
        {403, "[]", "no vesk-host (HTTP code 403)", 3},
        {200, "{}", "what answers is no vesk-host", 3},
        {200, R"({"token":"short"})", "what answers is no vesk-host", 3},
        {200, R"({"token":{}})", "what answers is no vesk-host", 3},
        {200, "", "what answers is no vesk-host", 3},
    };
    for (const auto &[status, body, text, exit] : cases) {
        m_host.setPairing(status, body);
        const Outcome outcome = join("123456", "y\n");
        EXPECT_EQ(outcome.status, exit) << body;
        EXPECT_THAT(outcome.errors, HasSubstr(text)) << body;
        EXPECT_EQ(kept().token, QByteArray()) << body;
    }
}

TEST_F(JoinCommandTest, AHostWithoutThePageWillDo)
{
    m_host.setPageMissing();
    EXPECT_EQ(join("123456", "y\n").status, 0);
}

TEST_F(JoinCommandTest, ALongAnswerIsNotReadToItsEnd)
{
    m_host.setPairing(200, Paired.chopped(1) + QByteArray(1000000, ' ') + "}");
    EXPECT_EQ(join("123456", "y\n").status, 3);
}

TEST_F(JoinCommandTest, BadUsageAsksNobody)
{
    for (const char *line : {"12345", "1234567", "12345x", "123 456", "123456 --fingerprint AB"})
        EXPECT_EQ(join(line, "y\n").status, 2) << line;
    EXPECT_THAT(m_host.authorizations(), IsEmpty());
    const Outcome local
        = run(QString(), {QStringLiteral("join"), QStringLiteral("123456")}, m_around);
    EXPECT_EQ(local.status, 2);
    EXPECT_THAT(local.errors, HasSubstr("say with --host"));
}

TEST_F(JoinCommandTest, WhatCannotBeKeptUsesUpNoCode)
{
    QFile file(m_around.knownHosts);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("{");
    file.close();
    const Outcome outcome = join("123456", "y\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("hosts.json is damaged"));
    m_around.knownHosts.clear();
    EXPECT_EQ(join("123456", "y\n").status, 1);
    EXPECT_THAT(m_host.posted(), IsEmpty());
}

TEST_F(JoinCommandTest, SendsNoCodeWhereHttpsIsWanted)
{
    FakeHost plain;
    plain.setStatus(308, m_host.url().toLatin1() + "pair");
    const Outcome outcome
        = run(plain.url(), {QStringLiteral("join"), QStringLiteral("123456")}, m_around);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("the host wants an encrypted connection"));
    EXPECT_THAT(plain.posted(), IsEmpty());
    EXPECT_THAT(m_host.authorizations(), IsEmpty());
}

TEST_F(JoinCommandTest, PairsOverAnUnencryptedConnectionWithinTheMachine)
{
    FakeHost plain;
    plain.setPairing(200, Paired);
    const Outcome outcome
        = run(plain.url(), {QStringLiteral("join"), QStringLiteral("123456")}, m_around);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(KnownHosts(m_around.knownHosts).find(plain.url())->token, Token);
}

TEST_F(JoinCommandTest, TellsWhenNobodyIsThere)
{
    const Outcome outcome = run(QStringLiteral("https://127.0.0.1:1/"),
        {QStringLiteral("join"), QStringLiteral("123456")}, m_around);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.errors, HasSubstr("no host at https://127.0.0.1:1/: "));
}

} // namespace
