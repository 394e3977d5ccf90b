// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/access/AccessMethods.h"

#include "api/web/VeskJson.h"
#include "tests/host/access/AccessFixture.h"
#include "tests/support/LogCapture.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const char *const Fingerprint = "AB:CD";

class AccessMethodsTest : public AccessFixture {
protected:
    AccessMethodsTest()
    {
        AccessMethods::Surroundings surroundings;
        surroundings.urls = [this] { return m_urls; };
        surroundings.fingerprint = [this] { return m_fingerprint; };
        surroundings.isConnected = [this](const QString &id) { return m_connected.contains(id); };
        m_pairing = std::make_unique<Pairing>(m_devices.get());
        m_methods = std::make_unique<AccessMethods>(
            &m_dispatcher, m_devices.get(), m_pairing.get(), surroundings);
        QObject::connect(m_methods.get(), &AccessMethods::notification,
            [this](const QString &method, const QVariant &params) {
                m_notifications.push_back(
                    method.toStdString() + ' ' + VeskJson::write(params).toStdString());
            });
    }

    /// The result, or the error, as JSON.
    std::string call(
        const char *method, const QVariantHash &params = {}, const Caller &caller = Caller())
    {
        const QByteArray message
            = VeskJson::write(QVariantHash {{QStringLiteral("jsonrpc"), QStringLiteral("2.0")},
                {QStringLiteral("id"), 1}, {QStringLiteral("method"), QString::fromLatin1(method)},
                {QStringLiteral("params"), params}});
        std::optional<QByteArray> reply;
        m_dispatcher.handle(message, MessageSender {nullptr, nullptr, caller},
            [&reply](const QByteArray &bytes) { reply = bytes; });
        EXPECT_TRUE(spinUntil([&] { return reply.has_value(); }));
        VeskError error;
        const QVariantHash members = VeskJson::parse(reply.value_or(QByteArray()), error).toHash();
        m_result = members.value(QStringLiteral("result")).toHash();
        m_error = members.value(QStringLiteral("error")).toHash();
        return VeskJson::write(m_error.isEmpty() ? m_result : m_error).toStdString();
    }
    int errorCode() const { return m_error.value(QStringLiteral("code")).toInt(); }
    std::string message() const
    {
        return m_error.value(QStringLiteral("message")).toString().toStdString();
    }
    static QVariantHash params(
        const QString &id, const char *key = nullptr, const QVariant &value = QVariant())
    {
        QVariantHash params {{QStringLiteral("id"), id}};
        if (key)
            params.insert(QString::fromLatin1(key), value);
        return params;
    }
    static QVariantHash role(const QVariant &role) { return {{QStringLiteral("role"), role}}; }

    QStringList m_urls {QStringLiteral("https://192.168.1.5:8765/")};
    QString m_fingerprint = QString::fromLatin1(Fingerprint);
    QStringList m_connected;
    JsonRpcDispatcher m_dispatcher;
    std::unique_ptr<Pairing> m_pairing;
    std::unique_ptr<AccessMethods> m_methods;
    std::vector<std::string> m_notifications;
    QVariantHash m_result;
    QVariantHash m_error;
};

TEST_F(AccessMethodsTest, TellsAProgramOnThisMachineThatItIsAnOwner)
{
    EXPECT_EQ(call("access.info"),
        R"({"device":null,"fingerprint":"AB:CD","role":"owner","urls":["https://192.168.1.5:8765/"]})");
    m_urls.clear();
    m_fingerprint.clear();
    EXPECT_EQ(
        call("access.info"), R"({"device":null,"fingerprint":null,"role":"owner","urls":[]})");
}

TEST_F(AccessMethodsTest, TellsADeviceWhoItIs)
{
    const auto tablet = add("Tablet");
    const std::string id = tablet.device.id.toStdString();
    EXPECT_EQ(call("access.info", {}, {AccessRole::Listener, tablet.device.id}),
        R"({"device":{"id":")" + id
            + R"(","name":"Tablet"},"fingerprint":"AB:CD","role":"listener","urls":["https://192.168.1.5:8765/"]})");
}

TEST_F(AccessMethodsTest, AListenerMayDoNothingHereButAskAndLeave)
{
    const auto tablet = add("Tablet");
    const auto phone = add("Phone");
    const Caller caller {AccessRole::Listener, tablet.device.id};
    const QVariantHash own = params(tablet.device.id);
    const QVariantHash other = params(phone.device.id);
    const struct {
        const char *method;
        QVariantHash params;
    } cases[] = {{"pairing.start", {}}, {"pairing.stop", {}}, {"pairing.state", {}},
        {"devices.list", {}}, {"devices.revoke", other},
        {"devices.rename", params(tablet.device.id, "name", QStringLiteral("x"))},
        {"devices.setRole", params(tablet.device.id, "role", QStringLiteral("owner"))},
        {"devices.revoke", params(QStringLiteral("unknown"))}};
    for (const auto &c : cases) {
        call(c.method, c.params, caller);
        EXPECT_EQ(errorCode(), JsonRpcError::NotAllowed) << c.method;
    }
    EXPECT_EQ(m_pairing->status().state, Pairing::State::Closed);
    EXPECT_EQ(m_devices->devices().size(), 2);
    EXPECT_EQ(call("devices.revoke", own, caller), "{}");
    EXPECT_FALSE(m_devices->find(tablet.token));
    EXPECT_TRUE(m_devices->find(phone.token));
}

TEST_F(AccessMethodsTest, ACallerWithoutADeviceRevokesNoneByAnEmptyId)
{
    add("Tablet");
    for (const QVariant &id : {QVariant(), QVariant(QString()), QVariant(5)}) {
        call("devices.revoke", {{QStringLiteral("id"), id}}, {AccessRole::Listener, QString()});
        EXPECT_EQ(errorCode(), JsonRpcError::InvalidParams);
    }
    EXPECT_EQ(m_devices->devices().size(), 1);
}

TEST_F(AccessMethodsTest, StartsAPairingAndTellsItsOwnersHowItGoes)
{
    call("pairing.start");
    const QString code = m_result.value(QStringLiteral("code")).toString();
    EXPECT_EQ(code.size(), 6);
    m_result.remove(QStringLiteral("code"));
    EXPECT_EQ(VeskJson::write(m_result),
        R"({"fingerprint":"AB:CD","role":"listener","seconds":120,"urls":["https://192.168.1.5:8765/"]})");
    EXPECT_THAT(call("pairing.state"), HasSubstr(R"({"device":null,"seconds":1)"));
    EXPECT_EQ(m_result.value(QStringLiteral("state")), QVariant(QStringLiteral("open")));
    bool isPaired = false;
    m_pairing->redeem(code, QStringLiteral("Tablet"), QString(),
        [&](const auto &added) { isPaired = bool(added); });
    ASSERT_TRUE(spinUntil([&] { return isPaired && m_notifications.size() == 3; }));
    const std::string id = m_devices->devices().at(0).id.toStdString();
    const std::string paired
        = R"({"device":{"id":")" + id + R"(","name":"Tablet"},"seconds":0,"state":"paired"})";
    EXPECT_THAT(m_notifications,
        ElementsAre(R"(pairing.changed {"device":null,"seconds":120,"state":"open"})",
            "pairing.changed " + paired, "devices.changed {}"));
    EXPECT_EQ(call("pairing.state"), paired);
    EXPECT_EQ(call("pairing.stop"), "{}");
    EXPECT_EQ(call("pairing.state"), R"({"device":null,"seconds":0,"state":"closed"})");
}

TEST_F(AccessMethodsTest, TellsThatThereWereTooManyWrongCodes)
{
    call("pairing.start", role(QStringLiteral("owner")));
    EXPECT_EQ(m_result.value(QStringLiteral("role")), QVariant(QStringLiteral("owner")));
    const int code = m_result.value(QStringLiteral("code")).toInt();
    for (int i = 1; i <= 5; ++i) {
        m_pairing->redeem(QStringLiteral("%1").arg((code + i) % 1000000, 6, 10, QLatin1Char('0')),
            QStringLiteral("x"), QString(), [](const auto &) {});
    }
    EXPECT_EQ(call("pairing.state"), R"({"device":null,"seconds":0,"state":"failed"})");
    EXPECT_EQ(
        m_notifications.back(), R"(pairing.changed {"device":null,"seconds":0,"state":"failed"})");
}

TEST_F(AccessMethodsTest, RefusesToStartWhatCannotWork)
{
    for (const QVariant &wrong : {QVariant(QStringLiteral("Owner")), QVariant(QString()),
             QVariant(1), QVariant(true), QVariant(QVariantList())}) {
        call("pairing.start", role(wrong));
        EXPECT_EQ(errorCode(), JsonRpcError::InvalidParams);
    }
    m_urls.clear();
    call("pairing.start");
    EXPECT_EQ(errorCode(), JsonRpcError::RequestFailed);
    EXPECT_EQ(message(),
        "Only programs on this machine can reach this host. Start it with --listen to let other "
        "devices in.");
    m_urls.append(QStringLiteral("https://[fe80::1]:8765/"));
    for (int i = 0; i < DeviceList::MaxDevices; ++i)
        add("Tablet");
    call("pairing.start");
    EXPECT_EQ(errorCode(), JsonRpcError::RequestFailed);
    EXPECT_THAT(message(), HasSubstr("No more devices can be paired."));
    EXPECT_EQ(m_pairing->status().state, Pairing::State::Closed);
}

TEST_F(AccessMethodsTest, ListsDevicesAsClientsNeedThem)
{
    EXPECT_EQ(call("devices.list"), R"({"devices":[]})");
    const auto tablet = add("Tablet 📻");
    const auto phone = add("Phone", AccessRole::Owner);
    m_connected.append(phone.device.id);
    m_devices->seen(tablet.device.id, QString());
    const auto row = [](const PairedDevice &device, const char *rest) {
        return R"({"address":)" + std::string(rest) + R"(,"id":")" + device.id.toStdString()
            + R"(","name":")" + device.name.toStdString() + R"(","paired":")"
            + accessTimeText(device.paired).toStdString() + '"';
    };
    const auto devices = m_devices->devices();
    const std::string list = call("devices.list", {}, {AccessRole::Owner, phone.device.id});
    EXPECT_EQ(list,
        R"({"devices":[)" + row(devices.at(0), R"(null,"connected":false,"current":false)")
            + R"(,"role":"listener","seen":")" + accessTimeText(devices.at(0).seen).toStdString()
            + R"("},)" + row(devices.at(1), R"("192.168.1.7","connected":true,"current":true)")
            + R"(,"role":"owner","seen":")" + accessTimeText(devices.at(1).seen).toStdString()
            + R"("}]})");
    EXPECT_THAT(list, Not(HasSubstr("oken")));
}

TEST_F(AccessMethodsTest, ChangesDevicesAndTellsOwnersOnce)
{
    const auto tablet = add("Tablet");
    ASSERT_TRUE(spinUntil([&] { return !m_notifications.empty(); }));
    m_notifications.clear();
    EXPECT_EQ(
        call("devices.rename", params(tablet.device.id, "name", QStringLiteral(" Bath "))), "{}");
    EXPECT_EQ(deviceOf(tablet.device.id).name, QStringLiteral("Bath"));
    ASSERT_TRUE(spinUntil([&] { return !m_notifications.empty(); }));
    EXPECT_THAT(m_notifications, ElementsAre("devices.changed {}"));
    EXPECT_EQ(
        call("devices.setRole", params(tablet.device.id, "role", QStringLiteral("owner"))), "{}");
    EXPECT_EQ(deviceOf(tablet.device.id).role, AccessRole::Owner);
    EXPECT_EQ(call("devices.setRole", params(tablet.device.id, "role", QStringLiteral("listener"))),
        "{}");
    EXPECT_EQ(deviceOf(tablet.device.id).role, AccessRole::Listener);
    m_notifications.clear();
    m_methods->connectionsChanged();
    m_methods->connectionsChanged();
    ASSERT_TRUE(spinUntil([&] { return !m_notifications.empty(); }));
    EXPECT_THAT(m_notifications, ElementsAre("devices.changed {}"));
    EXPECT_EQ(call("devices.revoke", params(tablet.device.id)), "{}");
    EXPECT_TRUE(m_devices->devices().isEmpty());
}

TEST_F(AccessMethodsTest, RefusesWhatIsWrongWithParameters)
{
    const auto tablet = add("Tablet");
    const QString &id = tablet.device.id;
    const struct {
        const char *method;
        QVariantHash params;
        int code;
    } cases[] = {
        {"devices.rename", {}, JsonRpcError::InvalidParams},
        {"devices.rename", params(id), JsonRpcError::InvalidParams},
        {"devices.rename", params(id, "name", 5), JsonRpcError::InvalidParams},
        {"devices.rename", params(id, "name", QString()), JsonRpcError::InvalidParams},
        {"devices.rename", params(id, "name", QStringLiteral("a\nb")), JsonRpcError::InvalidParams},
        {"devices.rename", params(id, "name", QString(65, QLatin1Char('x'))),
            JsonRpcError::InvalidParams},
        {"devices.rename", params(QStringLiteral("0"), "name", QStringLiteral("x")),
            JsonRpcError::RequestFailed},
        {"devices.setRole", params(id), JsonRpcError::InvalidParams},
        {"devices.setRole", params(id, "role", QStringLiteral("none")),
            JsonRpcError::InvalidParams},
        {"devices.setRole", params(id, "role", 1), JsonRpcError::InvalidParams},
        {"devices.setRole", params(QStringLiteral("0"), "role", QStringLiteral("owner")),
            JsonRpcError::RequestFailed},
        {"devices.revoke", {}, JsonRpcError::InvalidParams},
        {"devices.revoke", params(QStringLiteral("0")), JsonRpcError::RequestFailed},
    };
    for (const auto &c : cases) {
        const std::string error = call(c.method, c.params);
        EXPECT_EQ(errorCode(), c.code) << c.method << ": " << error;
    }
    EXPECT_EQ(deviceOf(id).name, QStringLiteral("Tablet"));
    EXPECT_EQ(deviceOf(id).role, AccessRole::Listener);
}

TEST_F(AccessMethodsTest, TheCodeIsInTheAnswerAndNotInTheLog)
{
    LogCapture log("");
    call("pairing.start");
    const QString code = m_result.value(QStringLiteral("code")).toString();
    call("pairing.state");
    m_pairing->stop();
    EXPECT_FALSE(log.lines().join(QLatin1Char(' ')).contains(code));
}

} // namespace
