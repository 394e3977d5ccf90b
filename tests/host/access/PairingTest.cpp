// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/Pairing.h"

#include "api/web/VeskJson.h"
#include "host/access/PairingResource.h"
#include "tests/host/access/AccessFixture.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

namespace {

using State = Pairing::State;
using Refusal = Pairing::Refusal;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr qint64 DurationMs = 120000;

/// A pairing with a clock of the test's, and the answers to what devices sent.
class PairingTest : public AccessFixture {
protected:
    PairingTest()
    {
        m_pairing = std::make_unique<Pairing>(m_devices.get(), [this] { return m_now; });
        QObject::connect(m_pairing.get(), &Pairing::changed,
            [this] { m_states.push_back(m_pairing->status().state); });
    }

    QString start(AccessRole role = AccessRole::Listener) { return m_pairing->start(role); }
    /// Another code than \a code, one for each \a number from 1 on.
    static QString wrong(const QString &code, int number = 1)
    {
        return QStringLiteral("%1").arg((code.toInt() + number) % 1000000, 6, 10, QLatin1Char('0'));
    }

    struct Outcome {
        bool isThere = false;
        std::optional<PairedDevices::Added> added;
        Pairing::Refused refused;
    };
    std::shared_ptr<Outcome> send(const QString &code, const char *name = "Tablet")
    {
        auto outcome = std::make_shared<Outcome>();
        m_pairing->redeem(code, QString::fromUtf8(name), QStringLiteral("10.0.0.1"),
            [outcome](const Result<PairedDevices::Added, Pairing::Refused> &result) {
                EXPECT_FALSE(outcome->isThere) << "answered twice";
                outcome->isThere = true;
                if (result)
                    outcome->added = *result;
                else
                    outcome->refused = result.error();
            });
        return outcome;
    }
    Outcome redeem(const QString &code, const char *name = "Tablet")
    {
        const auto outcome = send(code, name);
        EXPECT_TRUE(spinUntil([&] { return outcome->isThere; }));
        return *outcome;
    }

    qint64 m_now = 5000000;
    std::unique_ptr<Pairing> m_pairing;
    std::vector<State> m_states;
};

TEST_F(PairingTest, IsClosedAtFirst)
{
    EXPECT_EQ(m_pairing->status().state, State::Closed);
    EXPECT_EQ(m_pairing->status().seconds, 0);
    for (const char *const code : {"000000", "123456"}) {
        const Outcome outcome = redeem(QString::fromLatin1(code));
        EXPECT_FALSE(outcome.added);
        EXPECT_EQ(outcome.refused.reason, Refusal::Closed);
    }
    m_pairing->stop();
    EXPECT_TRUE(m_states.empty());
}

TEST_F(PairingTest, TheCodePairsOneDeviceWithTheRole)
{
    for (const AccessRole role : {AccessRole::Listener, AccessRole::Owner}) {
        const QString code = start(role);
        EXPECT_EQ(code.size(), 6);
        EXPECT_EQ(m_pairing->status().state, State::Open);
        EXPECT_EQ(m_pairing->status().seconds, 120);
        const Outcome outcome = redeem(code);
        ASSERT_TRUE(outcome.added);
        const auto caller = m_devices->find(outcome.added->token);
        ASSERT_TRUE(caller);
        EXPECT_EQ(caller->role, role);
        EXPECT_EQ(deviceOf(caller->deviceId).address, QStringLiteral("10.0.0.1"));
        const Pairing::Status status = m_pairing->status();
        EXPECT_EQ(status.state, State::Paired);
        EXPECT_EQ(status.seconds, 0);
        EXPECT_EQ(status.deviceId, outcome.added->device.id);
        EXPECT_EQ(status.deviceName, QStringLiteral("Tablet"));
        EXPECT_EQ(redeem(code).refused.reason, Refusal::Closed) << "a code works once";
    }
    EXPECT_THAT(m_states, ElementsAre(State::Open, State::Paired, State::Open, State::Paired));
    EXPECT_EQ(m_devices->devices().size(), 2);
}

TEST_F(PairingTest, ZerosInFrontBelongToTheCode)
{
    QString code = start();
    for (int i = 0; i < 10000 && !code.startsWith(QLatin1Char('0')); ++i)
        code = start();
    ASSERT_TRUE(code.startsWith(QLatin1Char('0')));
    EXPECT_EQ(redeem(code.mid(1)).refused.reason, Refusal::Invalid);
    EXPECT_EQ(redeem(QString::number(code.toInt())).refused.reason, Refusal::Invalid);
    EXPECT_TRUE(redeem(code).added);
}

TEST_F(PairingTest, WhatIsNoCodeOrNameIsRefusedAndDoesNotCount)
{
    const QString code = start();
    const QString codes[] = {QString(), QStringLiteral("12345"), QStringLiteral("1234567"),
        QStringLiteral("12345a"), QStringLiteral(" 12345"), QStringLiteral("-12345"),
        QStringLiteral("123 456"), code + QLatin1Char('\n'), QString(QChar(0x0661)).repeated(6),
        QString(QChar(0xff11)).repeated(6), QString(100000, QLatin1Char('1')),
        QString(6, QChar(0))};
    for (const QString &other : codes)
        EXPECT_EQ(redeem(other).refused.reason, Refusal::Invalid) << other.left(20).toStdString();
    for (const char *const name : {"", " ", "a\nb", "a\x1b", "\xE2\x80\xAEx"}) {
        EXPECT_EQ(redeem(code, name).refused.reason, Refusal::Invalid);
        EXPECT_EQ(redeem(wrong(code), name).refused.reason, Refusal::Invalid)
            << "otherwise names would tell whether a code is right";
    }
    EXPECT_EQ(redeem(wrong(code)).refused.left, 4);
    EXPECT_TRUE(redeem(code, "Küche 📻").added);
}

TEST_F(PairingTest, FiveWrongCodesEndIt)
{
    const QString code = start();
    for (int i = 1; i <= 4; ++i) {
        const Outcome outcome = redeem(wrong(code, i));
        EXPECT_EQ(outcome.refused.reason, Refusal::WrongCode);
        EXPECT_EQ(outcome.refused.left, 5 - i);
    }
    EXPECT_EQ(redeem(wrong(code, 5)).refused.reason, Refusal::Ended);
    EXPECT_EQ(m_pairing->status().state, State::Failed);
    EXPECT_EQ(redeem(code).refused.reason, Refusal::Closed) << "now the right one is too late";
    EXPECT_THAT(m_states, ElementsAre(State::Open, State::Failed));
    EXPECT_TRUE(m_devices->devices().isEmpty());
    EXPECT_TRUE(redeem(start()).added) << "the next pairing has five of its own";
}

TEST_F(PairingTest, TwoClientsShareTheFiveAndTheSameWrongCodeCountsEachTime)
{
    const QString code = start();
    std::vector<std::shared_ptr<Outcome>> outcomes;
    for (int i = 0; i < 10; ++i)
        outcomes.push_back(send(wrong(code, 1 + i % 2), i % 2 == 0 ? "One" : "Other"));
    std::vector<Refusal> reasons;
    for (const auto &outcome : outcomes)
        reasons.push_back(outcome->refused.reason);
    EXPECT_THAT(reasons,
        ElementsAre(Refusal::WrongCode, Refusal::WrongCode, Refusal::WrongCode, Refusal::WrongCode,
            Refusal::Ended, Refusal::Closed, Refusal::Closed, Refusal::Closed, Refusal::Closed,
            Refusal::Closed));
}

TEST_F(PairingTest, ASecondStartReplacesTheCodeAndItsCount)
{
    const QString first = start(AccessRole::Owner);
    EXPECT_EQ(redeem(wrong(first)).refused.left, 4);
    m_now += 100000;
    QString second = start();
    while (second == first)
        second = start();
    EXPECT_EQ(m_pairing->status().seconds, 120);
    EXPECT_EQ(m_pairing->role(), AccessRole::Listener);
    const Outcome outcome = redeem(first);
    EXPECT_EQ(outcome.refused.reason, Refusal::WrongCode);
    EXPECT_EQ(outcome.refused.left, 4);
    m_now += 100000;
    const Outcome paired = redeem(second);
    ASSERT_TRUE(paired.added);
    EXPECT_EQ(paired.added->device.role, AccessRole::Listener);
}

TEST_F(PairingTest, EndsAfterTwoMinutesToTheMillisecond)
{
    QString code = start();
    m_now += DurationMs - 1;
    EXPECT_EQ(m_pairing->status().seconds, 1);
    EXPECT_TRUE(redeem(code).added);

    code = start();
    m_now += DurationMs;
    EXPECT_EQ(m_pairing->status().state, State::Expired) << "although no timer has fired";
    EXPECT_EQ(redeem(code).refused.reason, Refusal::Closed);
    EXPECT_EQ(redeem(wrong(code)).refused.reason, Refusal::Closed);
    EXPECT_EQ(m_states.back(), State::Expired);
    EXPECT_EQ(std::count(m_states.begin(), m_states.end(), State::Expired), 1);
}

TEST_F(PairingTest, ACodeThatCameInTimeStaysGoodWhileTheDiskIsSlow)
{
    const QString code = start();
    diskIsStuck = true;
    m_now += DurationMs - 1;
    const auto first = send(code);
    const auto second = send(code, "Other");
    EXPECT_FALSE(first->isThere);
    EXPECT_EQ(second->refused.reason, Refusal::Closed) << "the code is taken";
    EXPECT_EQ(send(wrong(code), "Third")->refused.reason, Refusal::Closed);
    m_now += DurationMs;
    EXPECT_EQ(m_pairing->status().state, State::Open);
    EXPECT_EQ(m_pairing->status().seconds, 0);
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return first->isThere; }));
    ASSERT_TRUE(first->added);
    EXPECT_EQ(m_pairing->status().state, State::Paired);
    EXPECT_EQ(m_devices->devices().size(), 1);
}

TEST_F(PairingTest, WhoIsBeingPairedWhenItIsStoppedOrBegunAnewIsNot)
{
    for (const bool isStopped : {true, false}) {
        const QString code = start();
        diskIsStuck = true;
        const auto outcome = send(code);
        if (isStopped)
            m_pairing->stop();
        else
            start();
        diskIsStuck = false;
        ASSERT_TRUE(spinUntil([&] { return outcome->isThere; }));
        EXPECT_FALSE(outcome->added);
        EXPECT_EQ(outcome->refused.reason, Refusal::Closed);
        EXPECT_TRUE(m_devices->devices().isEmpty());
        EXPECT_EQ(m_pairing->status().state, isStopped ? State::Closed : State::Open);
        EXPECT_EQ(m_pairing->status().deviceId, QString());
    }
    openAgain();
    EXPECT_TRUE(m_devices->devices().isEmpty());
}

TEST_F(PairingTest, WhenTheDeviceCannotBeKeptItMayTryAgainInItsTime)
{
    const files::Problem problem {ENOSPC, "full"};
    PairedDevices devices(m_folder, failure(problem));
    m_pairing = std::make_unique<Pairing>(&devices, [this] { return m_now; });
    const QString code = start();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(redeem(code).refused.reason, Refusal::NotSaved);
        EXPECT_EQ(m_pairing->status().state, State::Open);
    }
    EXPECT_EQ(redeem(wrong(code)).refused.left, 4) << "right codes do not count";
    m_now += DurationMs;
    EXPECT_EQ(redeem(code).refused.reason, Refusal::Closed);
    EXPECT_TRUE(devices.devices().isEmpty());
    m_pairing.reset();
}

TEST_F(PairingTest, APairingThatIsGoneAnswersNobodyAndLeavesNoDevice)
{
    const QString code = start();
    diskIsStuck = true;
    const auto outcome = send(code);
    m_pairing.reset();
    diskIsStuck = false;
    EXPECT_EQ(rename(QStringLiteral("x"), "Other"), "There is no such device.");
    EXPECT_FALSE(outcome->isThere);
    EXPECT_TRUE(m_devices->devices().isEmpty());
}

TEST_F(PairingTest, TheTimerTellsOfTheEnd)
{
    start();
    auto *const timer = m_pairing->findChild<QTimer *>();
    ASSERT_TRUE(timer && timer->isActive());
    EXPECT_EQ(timer->intervalAsDuration(), Pairing::Duration);
    timer->start(0);
    ASSERT_TRUE(spinUntil([&] { return timer->interval() == 1000; }))
        << "by the clock it is too early, so it fires again";
    EXPECT_EQ(m_pairing->status().state, State::Open);
    m_now += DurationMs;
    timer->start(0);
    ASSERT_TRUE(spinUntil([&] { return m_states.size() == 2; }));
    EXPECT_THAT(m_states, ElementsAre(State::Open, State::Expired));
    EXPECT_FALSE(timer->isActive());
}

TEST_F(PairingTest, TheClockGoesOnInSeconds)
{
    const qint64 before = Pairing::bootTime();
    EXPECT_GT(before, 0);
    EXPECT_TRUE(spinUntil([&] { return Pairing::bootTime() > before + 20; }));
}

TEST_F(PairingTest, NeitherCodesNorTokensAreInTheLog)
{
    LogCapture log("");
    const QString code = start();
    redeem(wrong(code));
    const Outcome outcome = redeem(code);
    ASSERT_TRUE(outcome.added);
    const QString second = start();
    for (int i = 1; i <= 5; ++i)
        redeem(wrong(second, i));
    const QString all = log.lines().join(QLatin1Char('\n'));
    EXPECT_THAT(all.toStdString(), HasSubstr("A wrong code for pairing came from 10.0.0.1"));
    EXPECT_THAT(all.toStdString(), HasSubstr("it was the last"));
    for (const QString &secret :
        {code, wrong(code), second, wrong(second, 3), QString::fromLatin1(outcome.added->token)})
        EXPECT_FALSE(all.contains(secret)) << all.toStdString();
}

/// By HTTP.
class PairingResourceTest : public PairingTest {
protected:
    PairingResourceTest() { m_resource = std::make_unique<PairingResource>(m_pairing.get()); }

    HttpResponse post(const QByteArray &body, bool isSecure = true)
    {
        HttpRequest request;
        request.path = "/pair";
        request.method = "POST";
        request.body = body;
        request.peer = QStringLiteral("10.0.0.1");
        request.isSecure = isSecure;
        std::optional<HttpResponse> response;
        m_resource->get(request, [&response](const HttpResponse &one) { response = one; });
        EXPECT_TRUE(spinUntil([&] { return response.has_value(); }));
        EXPECT_EQ(response->type, "application/json");
        EXPECT_TRUE(response->headers.contains(
            qMakePair(QByteArray("Cache-Control"), QByteArray("no-store"))));
        return response.value_or(HttpResponse());
    }
    static QByteArray bodyOf(const QString &code, const QByteArray &rest = {})
    {
        return "{\"code\":\"" + code.toLatin1() + "\",\"name\":\" Kitchen tablet \"" + rest + "}";
    }
    static QByteArray cookieOf(const HttpResponse &response)
    {
        QByteArray cookie;
        for (const auto &header : response.headers) {
            if (header.first == "Set-Cookie")
                cookie = header.second;
        }
        return cookie;
    }

    std::unique_ptr<PairingResource> m_resource;
};

TEST_F(PairingResourceTest, TakesPostsToItsPathOnly)
{
    EXPECT_EQ(m_resource->methods(), "POST");
    EXPECT_TRUE(m_resource->owns("/pair"));
    for (const char *const path : {"/", "/pair/", "/pair/x", "/Pair", "/pairs", "", "pair"})
        EXPECT_FALSE(m_resource->owns(path)) << path;
}

TEST_F(PairingResourceTest, GivesTheTokenInACookie)
{
    const HttpResponse response = post(bodyOf(start()));
    EXPECT_EQ(response.code, 200U);
    const auto devices = m_devices->devices();
    ASSERT_EQ(devices.size(), 1);
    EXPECT_EQ(response.body,
        "{\"device\":{\"id\":\"" + devices.at(0).id.toLatin1()
            + R"(","name":"Kitchen tablet","role":"listener"}})");
    const QByteArray cookie = cookieOf(response);
    ASSERT_TRUE(cookie.startsWith("vesk-token=")) << cookie.constData();
    const QByteArray token = cookie.mid(11, 43);
    EXPECT_EQ(cookie.mid(54), "; Path=/; Max-Age=34560000; HttpOnly; SameSite=Strict; Secure");
    ASSERT_TRUE(m_devices->find(token));
    EXPECT_EQ(m_devices->find(token)->deviceId, devices.at(0).id);
}

TEST_F(PairingResourceTest, TheCookieHasTheBasePathAndIsSecureOverTlsOnly)
{
    m_resource = std::make_unique<PairingResource>(m_pairing.get(), "/radio");
    const QByteArray cookie = cookieOf(post(bodyOf(start()), false));
    EXPECT_EQ(cookie.mid(54), "; Path=/radio; Max-Age=34560000; HttpOnly; SameSite=Strict");
}

TEST_F(PairingResourceTest, GivesABearerItsTokenInTheBodyAndNoCookie)
{
    const HttpResponse response = post(bodyOf(start(AccessRole::Owner), ",\"bearer\":true"));
    EXPECT_EQ(response.code, 200U);
    EXPECT_EQ(cookieOf(response), "");
    VeskError error;
    const QVariantHash body = VeskJson::parse(response.body, error).toHash();
    const QByteArray token = body.value(QStringLiteral("token")).toString().toLatin1();
    ASSERT_TRUE(m_devices->find(token));
    EXPECT_EQ(m_devices->find(token)->role, AccessRole::Owner);
    EXPECT_EQ(body.value(QStringLiteral("device")).toHash().value(QStringLiteral("role")),
        QVariant(QStringLiteral("owner")));
}

TEST_F(PairingResourceTest, RefusesInJson)
{
    EXPECT_EQ(post(bodyOf(QStringLiteral("123456"))).code, 409U);
    EXPECT_EQ(post(bodyOf(QStringLiteral("123456"))).body, R"({"error":"closed"})");
    const QString code = start();
    for (int left = 4; left > 0; --left) {
        const HttpResponse response = post(bodyOf(wrong(code, left)));
        EXPECT_EQ(response.code, 403U);
        EXPECT_EQ(
            response.body, "{\"error\":\"wrongCode\",\"left\":" + QByteArray::number(left) + "}");
        EXPECT_EQ(cookieOf(response), "");
    }
    const HttpResponse last = post(bodyOf(wrong(code, 5)));
    EXPECT_EQ(last.code, 403U);
    EXPECT_EQ(last.body, R"({"error":"ended"})");
    EXPECT_EQ(post(bodyOf(code)).code, 409U);
}

TEST_F(PairingResourceTest, TellsThatTheDiskIsFull)
{
    PairedDevices devices(m_folder, failure(files::Problem {ENOSPC, "full"}));
    Pairing pairing(&devices);
    m_resource = std::make_unique<PairingResource>(&pairing);
    const HttpResponse response = post(bodyOf(pairing.start(AccessRole::Listener)));
    EXPECT_EQ(response.code, 503U);
    EXPECT_EQ(response.body, R"({"error":"notSaved"})");
    EXPECT_EQ(cookieOf(response), "");
    m_resource.reset();
}

TEST_F(PairingResourceTest, WhatIsNoRequestIsInvalidAndDoesNotCount)
{
    const QString code = start();
    const QByteArray good = code.toLatin1();
    const QByteArray bodies[] = {QByteArray(), "null", "[]", "{}", "\"" + good + "\"", good,
        "{\"code\":" + good + ",\"name\":\"x\"}", "{\"code\":\"" + good + "\"}",
        "{\"code\":\"" + good + "\",\"name\":null}", "{\"code\":\"" + good + "\",\"name\":5}",
        "{\"code\":\"" + good + "\",\"name\":\"  \"}",
        "{\"code\":[\"" + good + "\"],\"name\":\"x\"}",
        "{\"code\":\"" + good + "\",\"name\":\"a\\u0000b\"}",
        "{\"code\":\"" + good + "\",\"name\":\"a\\u202eb\"}",
        "{\"code\":\"" + good + "\",\"name\":\"x\",\"bearer\":1}",
        "{\"code\":\"" + good + "\",\"name\":\"x\",\"bearer\":\"true\"}", bodyOf(code).chopped(1),
        bodyOf(code) + '}', QByteArray(1000, '['),
        bodyOf(code, ",\"more\":\"" + QByteArray(PairingResource::MaxBody, 'x') + '"'),
        "code=" + good + "&name=x"};
    for (const QByteArray &body : bodies) {
        const HttpResponse response = post(body);
        EXPECT_EQ(response.code, 400U) << body.left(100).constData();
        EXPECT_EQ(response.body, R"({"error":"invalid"})");
    }
    EXPECT_TRUE(m_devices->devices().isEmpty());
    EXPECT_EQ(post(bodyOf(code, ",\"bearer\":null,\"more\":[{}]")).code, 200U);
}

TEST_F(PairingResourceTest, ARequestInProgressOutlivesTheResource)
{
    const QString code = start();
    diskIsStuck = true;
    HttpRequest request;
    request.body = bodyOf(code);
    std::optional<HttpResponse> response;
    m_resource->get(request, [&response](const HttpResponse &one) { response = one; });
    m_resource.reset();
    diskIsStuck = false;
    ASSERT_TRUE(spinUntil([&] { return response.has_value(); }));
    EXPECT_EQ(response->code, 200U);
}

} // namespace
