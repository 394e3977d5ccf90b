// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/alarm/AlarmMethods.h"

#include "api/web/VeskJson.h"
#include "host/alarm/SleepMethods.h"
#include "tests/host/alarm/AlarmFixture.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

class AlarmMethodsTest : public AlarmTest {
protected:
    AlarmMethodsTest()
        : methods(&rpc, alarms.get(), &clock, &logic)
        , sleepMethods(&rpc, sleep.get(), &clock)
    {
        clock.setOffset(3600);
        methods.setIconSeen([this](const QString &icon) { icons.append(icon); });
        methods.setPresets([this](int number, const AlarmMethods::PresetAnswer &answer) {
            if (number == 3)
                answer(station("http://stream/preset"));
            else
                answer(failure(text("Nothing is kept there.")));
        });
        const auto note = [this](const QString &method, const QVariant &params) {
            notified.append(method + QLatin1Char(' ') + QString::fromUtf8(VeskJson::write(params)));
        };
        QObject::connect(&methods, &AlarmMethods::notification, note);
        QObject::connect(&sleepMethods, &SleepMethods::notification, note);
    }

    QVariantHash call(const char *method, const char *params = "{}")
    {
        QByteArray answer;
        rpc.handle(QByteArray("{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"") + method
                + "\",\"params\":" + params + "}",
            {}, [&answer](const QByteArray &bytes) { answer = bytes; });
        EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
        QCoreApplication::processEvents();
        VeskError error;
        return VeskJson::parse(answer, error).toHash();
    }
    /// As JSON with sorted names; of an error, its code and message.
    std::string result(const char *method, const char *params = "{}")
    {
        const QVariantHash answer = call(method, params);
        const QVariantHash error = answer.value(text("error")).toHash();
        if (!error.isEmpty()) {
            return std::to_string(error.value(text("code")).toInt()) + ' '
                + error.value(text("message")).toString().toStdString();
        }
        return json(answer.value(text("result")));
    }
    static std::string json(const QVariant &value)
    {
        return QJsonDocument(QJsonValue::fromVariant(sorted(value)).toObject())
            .toJson(QJsonDocument::Compact)
            .toStdString();
    }
    static QVariant sorted(const QVariant &value)
    {
        if (value.userType() == QMetaType::QVariantHash) {
            QVariantMap map;
            const QVariantHash hash = value.toHash();
            for (auto entry = hash.begin(); entry != hash.end(); ++entry)
                map.insert(entry.key(), sorted(entry.value()));
            return map;
        }
        if (value.userType() == QMetaType::QVariantList) {
            QVariantList list;
            const QVariantList given = value.toList();
            for (const QVariant &entry : given)
                list.append(sorted(entry));
            return list;
        }
        return value;
    }

    JsonRpcDispatcher rpc;
    AlarmMethods methods;
    SleepMethods sleepMethods;
    QStringList icons;
    QStringList notified;
};

TEST_F(AlarmMethodsTest, ListsWhatWasSet)
{
    EXPECT_EQ(result("alarms.list"), R"({"alarms":[],"missed":[],"ringing":null})");
    EXPECT_EQ(
        result("alarms.set", R"({"time":"07:30","days":[5,1],"volume":40,"fade":10,"preset":3})"),
        R"({"id":"1","next":"2025-11-24T07:30:00+01:00"})");
    EXPECT_EQ(result("alarms.list"),
        R"({"alarms":[{"days":[1,5],"enabled":true,"fade":10,"icon":"http://icon/","id":"1",)"
        R"("next":"2025-11-24T07:30:00+01:00","path":"Test:row","time":"07:30",)"
        R"("title":"Station","volume":40}],"missed":[],"ringing":null})");
    EXPECT_EQ(icons, QStringList {text("http://icon/")});
    EXPECT_EQ(notified, QStringList {text("alarms.changed {}")});
}

TEST_F(AlarmMethodsTest, WhatIsLeftOutIsAsItWasOrAsUsual)
{
    EXPECT_EQ(result("alarms.set", R"({"time":"07:30"})"),
        R"({"id":"1","next":"2025-11-24T07:30:00+01:00"})");
    const Alarm &first = alarms->book().alarms().first();
    EXPECT_TRUE(first.isOnce());
    EXPECT_TRUE(first.enabled);
    EXPECT_FALSE(first.volume);
    EXPECT_EQ(first.fade, AlarmMethods::DefaultFade);
    EXPECT_TRUE(first.row.isEmpty()); // nothing played
    result("alarms.set", R"({"id":"1","days":[2],"volume":7,"fade":0,"preset":3})");
    EXPECT_EQ(result("alarms.set", R"({"id":"1","enabled":false})"), R"({"id":"1","next":null})");
    EXPECT_EQ(result("alarms.set", R"({"id":"1","enabled":true,"time":"08:00"})"),
        R"({"id":"1","next":"2025-11-25T08:00:00+01:00"})");
    const Alarm &changed = alarms->book().alarms().first();
    EXPECT_EQ(changed.volume, 7);
    EXPECT_EQ(changed.fade, 0);
    EXPECT_EQ(changed.row.title().toString(), text("Station"));
    result("alarms.set", R"({"id":"1","volume":null})");
    EXPECT_FALSE(alarms->book().alarms().first().volume);
}

TEST_F(AlarmMethodsTest, ANewOneIsForWhatPlays)
{
    logic.playRow(station("http://stream/playing"), [](const auto &, const auto &) {});
    result("alarms.set", R"({"time":"07:30"})");
    EXPECT_EQ(alarms->book().alarms().first().row.mediaData().activeResource().uri(),
        text("http://stream/playing"));
    logic.stop();
    result("alarms.set", R"({"time":"07:30"})");
    EXPECT_TRUE(alarms->book().find(text("2"))->row.isEmpty());
}

TEST_F(AlarmMethodsTest, TakesARowOfAScreenAsItListsIt)
{
    result("alarms.set", R"({"time":"07:30","screen":"Test:list","row":0,"path":"Test:row"})");
    const VeskRoles row = alarms->book().alarms().first().row;
    EXPECT_EQ(row.mediaData().activeResource().uri(), text("http://stream/before"));
    EXPECT_FALSE(row.mediaData().metaData().prePlayPath().isEmpty());
    EXPECT_EQ(result("alarms.set", R"({"time":"07:30","screen":"Test:list","row":2})"),
        "-32000 There is nothing to play in this row.");
    EXPECT_EQ(
        result("alarms.set", R"({"time":"07:30","screen":"Test:list","row":0,"path":"Test:gone"})"),
        "-32004 This entry is no longer in the list.");
    EXPECT_EQ(alarms->book().alarms().size(), 1);
}

TEST_F(AlarmMethodsTest, RefusesBadParameters)
{
    for (const char *params :
        {"{}", R"({"time":"7:30"})", R"({"time":730})", R"({"time":"07:30","days":[0]})",
            R"({"time":"07:30","days":[8]})", R"({"time":"07:30","days":[1,1]})",
            R"({"time":"07:30","days":["1"]})", R"({"time":"07:30","days":[1.5]})",
            R"({"time":"07:30","days":1})", R"({"time":"07:30","enabled":1})",
            R"({"time":"07:30","volume":101})", R"({"time":"07:30","volume":-1})",
            R"({"time":"07:30","volume":"40"})", R"({"time":"07:30","fade":601})",
            R"({"time":"07:30","fade":-1})", R"({"time":"07:30","preset":0})",
            R"({"time":"07:30","preset":13})", R"({"time":"07:30","preset":"3"})",
            R"({"time":"07:30","screen":"Test:list"})", R"({"time":"07:30","screen":7,"row":0})"})
        EXPECT_EQ(result("alarms.set", params).substr(0, 6), "-32602") << params;
    for (const char *params : {R"({"minutes":0})", R"({"minutes":121})", R"({"minutes":"9"})"})
        EXPECT_EQ(result("alarms.snooze", params).substr(0, 6), "-32602") << params;
    for (const char *params : {"{}", R"({"minutes":0})", R"({"minutes":1441})",
             R"({"minutes":1.5})", R"({"minutes":30,"fade":-1})", R"({"minutes":30,"fade":601})"})
        EXPECT_EQ(result("sleep.start", params).substr(0, 6), "-32602") << params;
    EXPECT_TRUE(alarms->book().alarms().isEmpty());
    EXPECT_EQ(notified, QStringList());
}

TEST_F(AlarmMethodsTest, SaysWhatThereIsNot)
{
    EXPECT_EQ(
        result("alarms.set", R"({"id":"7","time":"07:30"})"), "-32000 There is no such alarm.");
    EXPECT_EQ(result("alarms.set", R"({"id":7,"time":"07:30"})"), "-32000 There is no such alarm.");
    EXPECT_EQ(result("alarms.remove", R"({"id":"7"})"), "-32000 There is no such alarm.");
    EXPECT_EQ(result("alarms.remove"), "-32000 There is no such alarm.");
    EXPECT_EQ(
        result("alarms.set", R"({"time":"07:30","preset":4})"), "-32000 Nothing is kept there.");
    EXPECT_EQ(result("alarms.snooze"), "-32000 No alarm rings.");
    EXPECT_EQ(result("alarms.stop"), "{}");
}

TEST_F(AlarmMethodsTest, RingsSnoozesAndStops)
{
    result("alarms.set", R"({"time":"07:30","preset":3})");
    clock.pass(std::chrono::minutes(390));
    EXPECT_NE(result("alarms.list").find(R"("ringing":"1")"), std::string::npos);
    EXPECT_EQ(result("alarms.snooze"), R"({"until":"2025-11-24T07:39:00+01:00"})");
    EXPECT_NE(
        result("alarms.list").find(R"("next":"2025-11-24T07:39:00+01:00")"), std::string::npos);
    clock.pass(std::chrono::minutes(9));
    EXPECT_NE(result("alarms.list").find(R"("ringing":"1")"), std::string::npos);
    EXPECT_EQ(result("alarms.stop"), "{}");
    EXPECT_NE(result("alarms.list").find(R"("ringing":null)"), std::string::npos);
    EXPECT_EQ(result("alarms.remove", R"({"id":"1"})"), "{}");
    EXPECT_EQ(result("alarms.list"), R"({"alarms":[],"missed":[],"ringing":null})");
}

TEST_F(AlarmMethodsTest, TellsMissedOnesUntilDismissed)
{
    result("alarms.set", R"({"time":"07:30"})");
    clock.sleep(std::chrono::hours(10));
    settle();
    EXPECT_NE(
        result("alarms.list").find(R"("missed":[{"at":"2025-11-24T07:30:00+01:00","id":"1"}])"),
        std::string::npos);
    EXPECT_EQ(result("alarms.dismissMissed"), "{}");
    EXPECT_NE(result("alarms.list").find(R"("missed":[])"), std::string::npos);
}

TEST_F(AlarmMethodsTest, SleepStartsStopsAndTells)
{
    EXPECT_EQ(result("sleep.state"), R"({"ends":null,"left":0})");
    EXPECT_EQ(
        result("sleep.start", R"({"minutes":30})"), R"({"ends":"2025-11-24T01:30:00+01:00"})");
    clock.pass(std::chrono::minutes(10));
    EXPECT_EQ(result("sleep.state"), R"({"ends":"2025-11-24T01:30:00+01:00","left":1200})");
    EXPECT_EQ(result("sleep.stop"), "{}");
    EXPECT_EQ(result("sleep.stop"), "{}");
    EXPECT_EQ(result("sleep.state"), R"({"ends":null,"left":0})");
    ASSERT_EQ(notified.size(), 2);
    EXPECT_TRUE(notified.first().startsWith(text("sleep.changed {")));
    EXPECT_TRUE(notified.first().contains(text("\"left\":1800")));
    EXPECT_TRUE(notified.last().contains(text("\"left\":0")));
}

TEST_F(AlarmMethodsTest, WithoutADatabaseTheReasonIsTold)
{
    ASSERT_TRUE(database.close(std::chrono::steady_clock::now() + std::chrono::seconds(10)));
    Alarms unread(&database, &clock, ring.get());
    JsonRpcDispatcher other;
    const AlarmMethods methodsOfUnread(&other, &unread, &clock, &logic);
    QByteArray answer;
    other.handle(R"({"jsonrpc":"2.0","id":1,"method":"alarms.list"})", {},
        [&answer](const QByteArray &bytes) { answer = bytes; });
    EXPECT_TRUE(spinUntil([&] { return !answer.isEmpty(); }));
    EXPECT_TRUE(answer.contains("-32000")) << answer.constData();
}

} // namespace
