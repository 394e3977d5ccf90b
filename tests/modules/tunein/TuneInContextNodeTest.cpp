// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "modules/tunein/TuneInContextNode.h"

#include "api/tunein/VeskTuneInPaths.h"
#include "modules/tunein/TuneInRequest.h"
#include "tests/modules/tunein/TuneInFixture.h"

#include <QCoreApplication>
#include <QMetaMethod>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char TitleSignature[]
    = "virtual QVariant TuneInAddRemovePresetsNode::getRoleData(const QString&, const Params&)";
const QByteArray Done = R"({"head":{"status":"200"},"body":[]})";

QByteArray station(const QByteArray &isPreset)
{
    return screen(R"({"element":"station","guide_id":"s1","is_preset":)" + isPreset + "}");
}

/// The path of a menu's favorites entry for an item.
QString entry(const QString &guideId, const QString &sid = QString(),
    const QString &menu = "browser_context"_s)
{
    QMap<QString, QString> params {
        {"veskMatchingPath"_s, path("TuneIn:browse"_s, {{"veskGuideId"_s, guideId}}).toEncoded()}};
    if (!sid.isEmpty())
        params.insert("sid"_s, sid);
    return path("TuneIn:"_s + menu + "/presets"_s, params).toEncoded();
}

class TuneInPresetsTest : public TuneInFixture {
protected:
    TuneInPresetsTest()
    {
        answer("/Describe.ashx", station("false"));
        answer("/Preset.ashx", Done);
        start();
        log().clear();
    }

    QString title(const QString &entry)
    {
        return TrString::fromVariant(role(entry, "title"_s)).sourceText();
    }
    Answer invoke(const QString &entry) { return setData(entry, VeskRoles::Activate(), {}); }

    void expectDescribed(const QByteArray &id)
    {
        expectRequests(
            {"GET /Describe.ashx?id=" + id + "&render=json&partnerId=partner&serial=ABC"});
    }

    void expectChanged(const QByteArray &command, const QByteArray &id)
    {
        expectRequests({"GET /Preset.ashx?c=" + command
            + "&render=json&partnerId=partner&serial=ABC&id=" + id});
    }

    /// Worker's thread only.
    TuneInAddRemovePresetsNode *node() const
    {
        return dynamic_cast<TuneInAddRemovePresetsNode *>(
            worker()->nodes()->find(path("TuneIn:browser_context/presets"_s)));
    }

    bool isPreset(const QString &id)
    {
        bool result = false;
        onWorker([&] {
            ASSERT_NE(node(), nullptr);
            result = node()->isPreset(id);
        });
        return result;
    }

    /// Activates the node directly, with \a data for the reply. Whether the reply was complete when
    /// the node's function returned.
    bool isAnsweredOnReturn(
        const QString &entry, const std::shared_ptr<CMReplyData<QVariant>> &data)
    {
        bool result = false;
        onWorker([&] {
            ASSERT_NE(node(), nullptr);
            EXPECT_TRUE(node()->setDataRequest(CMSetDataRequest(CMPath::fromEncoded(entry),
                VeskRoles::Activate(), QVariant(), CMReply<QVariant>(data))));
            result = data->isFinished();
        });
        return result;
    }
};

/// Records the resets of some paths, in order. Other kinds of changes are ignored: a menu also
/// passes on those of its rows.
class Changes {
public:
    void follow(const QString &path)
    {
        m_subscriptions.push_back(CMRoot()->subscribe(
            CMPath::fromEncoded(path), &m_context, [this](const CMChange &change) {
                if (change.kind != CMSubscribe::RowsChangeReset())
                    return;
                m_seen.append(change.path.toEncoded() + " "_s + QString::number(change.first)
                    + " "_s + QString::number(change.last));
            }));
    }

    /// The notifications so far.
    QStringList seen()
    {
        QCoreApplication::processEvents();
        return m_seen;
    }

private:
    QObject m_context;
    QStringList m_seen;
    std::vector<std::unique_ptr<CMSubscription>> m_subscriptions;
};

} // namespace

TEST_F(TuneInPresetsTest, OfferToAddAnItemThatIsNoPreset)
{
    EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s);
    expectDescribed("s1");
    EXPECT_EQ(TrString::fromVariant(role(entry("s1"_s), "title"_s)),
        TrString(trExtractContext(TitleSignature), "Add to TuneIn Favorites"_s));
}

TEST_F(TuneInPresetsTest, OfferToRemoveAPreset)
{
    answer("/Describe.ashx", station("true"));
    EXPECT_EQ(TrString::fromVariant(role(entry("s1"_s), "title"_s)),
        TrString(trExtractContext(TitleSignature), "Remove from TuneIn Favorites"_s));
}

TEST_F(TuneInPresetsTest, AreRecognisedOnlyByTheTextTrue)
{
    for (const char *yes : {"true", "\"true\""}) {
        answer("/Describe.ashx", station(yes));
        EXPECT_EQ(title(entry("s1"_s)), "Remove from TuneIn Favorites"_s) << yes;
    }
    for (const char *no :
        {"\"True\"", "\"TRUE\"", "\"1\"", "1", "\"\"", "null", "[]", "false", "\"true \""}) {
        answer("/Describe.ashx", station(no));
        EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s) << no;
    }
}

TEST_F(TuneInPresetsTest, AreStationsAndShows)
{
    answer("/Describe.ashx", screen(R"({"element":"show","is_preset":"true"})"));
    EXPECT_EQ(title(entry("p1"_s)), "Remove from TuneIn Favorites"_s);
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
    for (const char *element : {"link", "category", "Station", "", "topic"}) {
        log().clear();
        answer("/Describe.ashx",
            screen(QByteArray(R"({"element":")") + element + R"(","is_preset":"true"})"));
        EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s) << element;
        EXPECT_THAT(log().lines("ERROR"_s),
            ElementsAre("TuneInAddRemovePresetsNode::isPreset: Invalid response!"_s));
    }
}

TEST_F(TuneInPresetsTest, ReadOnlyTheFirstElement)
{
    answer("/Describe.ashx",
        screen(
            R"({"element":"station","is_preset":"false"},{"element":"station","is_preset":"true"})"));
    EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s);
    answer(
        "/Describe.ashx", screen(R"({"element":"link"},{"element":"station","is_preset":"true"})"));
    EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s);
    for (const char *second :
        {R"({"element":"station","is_preset":"false"})", R"({"element":"link"})", "{}", "1"}) {
        answer("/Describe.ashx",
            screen(QByteArray(R"({"element":"station","is_preset":"true"},)") + second));
        EXPECT_EQ(title(entry("s1"_s)), "Remove from TuneIn Favorites"_s) << second;
    }
}

TEST_F(TuneInPresetsTest, OfferToAddWhenTheCheckFails)
{
    answer("/Describe.ashx", screen({}));
    EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s);
    EXPECT_THAT(log().lines("ERROR"_s),
        ElementsAre("TuneInAddRemovePresetsNode::isPreset: Invalid response!"_s));

    log().clear();
    answer("/Describe.ashx", QByteArray(R"({"head":{"status":"500"},"body":[]})"));
    EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s);
    const QString line = log().lines("ERROR"_s).last();
    EXPECT_EQ(line,
        "CMTuneInWorker: reporting status: failed: error: '"_s
            + printed(TuneInRequest::tuneInErrorToCMError(QString(), "500"_s)) + "'"_s);

    closeServer();
    EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s);
    openServer();
    setNetwork(false);
    EXPECT_EQ(title(entry("s1"_s)), "Add to TuneIn Favorites"_s);
}

TEST_F(TuneInPresetsTest, CheckNothingForAnEmptyId)
{
    EXPECT_FALSE(isPreset(QString()));
    expectRequests({});
    EXPECT_THAT(log().lines("ERROR"_s), IsEmpty());
    EXPECT_TRUE(log().contains("TRACE id: "_s));
    isPreset("s7"_s);
    EXPECT_TRUE(log().contains("TRACE id: s7"_s));
    expectDescribed("s7");
}

TEST_F(TuneInPresetsTest, UseTheSidOfATopic)
{
    title(entry("t1"_s, "s5"_s));
    expectDescribed("s5");
    invoke(entry("t1"_s, "s5"_s));
    expectChanged("add", "s5");
}

TEST_F(TuneInPresetsTest, UseTheTopicWithoutSid)
{
    title(entry("t1"_s));
    expectDescribed("t1");
    invoke(entry("t1"_s));
    expectChanged("add", "t1");
}

TEST_F(TuneInPresetsTest, UseTheGuideIdOfOtherItems)
{
    title(entry("s1"_s, "s5"_s));
    expectDescribed("s1");
    invoke(entry("s1"_s, "s5"_s));
    expectChanged("add", "s1");
    title(entry("T1"_s, "s5"_s));
    expectDescribed("T1");
}

TEST_F(TuneInPresetsTest, HaveAnErrorAsTitleWithoutAMatchingPath)
{
    EXPECT_EQ(TrString::fromVariant(role("TuneIn:browser_context/presets?sid=s1"_s, "title"_s)),
        TrString(trExtractContext(TitleSignature), "Error"_s));
    EXPECT_THAT(log().lines("WARN"_s), ElementsAre("Query not including 'veskMatchingPath'"_s));
    expectRequests({});
}

TEST_F(TuneInPresetsTest, LogTheQueryForTheirTitle)
{
    title(entry("s1"_s, "s2"_s));
    EXPECT_TRUE(log().contains(
        "TRACE role: 'title' items: QMap((sid, s2)(veskMatchingPath, TuneIn:browse?veskGuideId=s1))"_s));
}

TEST_F(TuneInPresetsTest, RequestNothingForOtherRoles)
{
    EXPECT_EQ(role(entry("s1"_s), "type"_s).toInt(), VeskRolesType::Activate());
    EXPECT_EQ(role(entry("s1"_s), "path"_s).toString(), entry("s1"_s));
    EXPECT_THAT(log().lines(), IsEmpty());
    expectRequests({});
}

TEST_F(TuneInPresetsTest, AreAddedAndRemovedByActivation)
{
    title(entry("s1"_s));
    server().clearRequests();
    log().clear();
    const Answer added = invoke(entry("s1"_s));
    EXPECT_TRUE(added.error.isEmpty());
    EXPECT_TRUE(added.value.isNull());
    expectChanged("add", "s1");
    EXPECT_THAT(log().lines("DEBUG"_s),
        Contains(
            "TuneInAddRemovePresetsNode::on_node_invoke: path: 'TuneIn:browse?veskGuideId=s1', guideID: s1, sid: , command: add"_s));
    EXPECT_THAT(
        log().lines("DEBUG"_s), Contains("TuneInAddRemovePresetsNode::on_node_invoke: add: OK"_s));
    EXPECT_THAT(log().lines("INFO"_s), ElementsAre("Updating nodes with presets in it ..."_s));

    answer("/Describe.ashx", station("true"));
    title(entry("s1"_s));
    server().clearRequests();
    EXPECT_TRUE(invoke(entry("s1"_s)).error.isEmpty());
    expectChanged("remove", "s1");
}

TEST_F(TuneInPresetsTest, SendTheSameCommandTwiceWithoutATitleBetween)
{
    title(entry("s1"_s));
    server().clearRequests();
    answer("/Describe.ashx", station("true"));
    invoke(entry("s1"_s));
    expectChanged("add", "s1");
    invoke(entry("s1"_s));
    expectChanged("add", "s1");
}

TEST_F(TuneInPresetsTest, AreRemovedTwiceWithoutATitleBetween)
{
    answer("/Describe.ashx", station("true"));
    title(entry("s1"_s));
    server().clearRequests();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(invoke(entry("s1"_s)).error.isEmpty());
        expectChanged("remove", "s1");
    }
    EXPECT_THAT(log().lines("WARN"_s), IsEmpty());
}

TEST_F(TuneInPresetsTest, KeepTheCommandWhenTheTitleIsAnError)
{
    answer("/Describe.ashx", station("true"));
    title(entry("s1"_s));
    title("TuneIn:browser_context/presets"_s);
    server().clearRequests();
    invoke(entry("s1"_s));
    expectChanged("remove", "s1");
}

TEST_F(TuneInPresetsTest, CannotBeActivatedBeforeATitle)
{
    const Answer answer = invoke(entry("s1"_s));
    EXPECT_EQ(answer.error.name(), CMError::UnansweredName());
    EXPECT_THAT(log().lines("DEBUG"_s),
        ElementsAre(
            "TuneInAddRemovePresetsNode::on_node_invoke: path: 'TuneIn:browse?veskGuideId=s1', guideID: s1, sid: , command: "_s));
    EXPECT_THAT(log().lines("WARN"_s), ElementsAre("Invalid command: ''"_s));
    expectRequests({});
}

TEST_F(TuneInPresetsTest, CannotBeActivatedWithoutAMatchingPath)
{
    title(entry("s1"_s));
    server().clearRequests();
    log().clear();
    const Answer answer = invoke("TuneIn:browser_context/presets?sid=s1"_s);
    EXPECT_EQ(answer.error.name(), CMError::UnansweredName());
    EXPECT_THAT(log().lines("WARN"_s), ElementsAre("Query not including 'veskMatchingPath'"_s));
    expectRequests({});
}

TEST_F(TuneInPresetsTest, PassOnTheErrorOfTheRequest)
{
    title(entry("s1"_s));
    answer("/Preset.ashx", QByteArray(R"({"head":{"status":"403"},"body":[]})"));
    const Answer forbidden = invoke(entry("s1"_s));
    EXPECT_EQ(forbidden.errorText(), "Access forbidden."_s);
    EXPECT_EQ(forbidden.error.name(), CMError::DefaultName() + ":0"_s);
    EXPECT_EQ(log().lines("ERROR"_s).last(),
        "TuneInAddRemovePresetsNode::on_node_invoke: %1: failed, error: '"_s
            + printed(forbidden.error) + "'"_s);
    EXPECT_THAT(log().lines("INFO"_s), IsEmpty());

    closeServer();
    EXPECT_EQ(invoke(entry("s1"_s)).errorText(), "Invalid data received."_s);
    openServer();
}

TEST_F(TuneInPresetsTest, NotifyTheListThenBothMenus)
{
    Changes changes;
    changes.follow("TuneIn:browser_context?guideId=s1&more=x"_s);
    changes.follow("TuneIn:player_context?guideId=s1"_s);
    changes.follow("TuneIn:browse/uri/Browse.ashx?c=presets&veskDisplayName=Mine"_s);
    for (const char *other : {"TuneIn:browse", "TuneIn:browse/uri/Browse.ashx?c=music",
             "TuneIn:player_context?guideId=s2", "TuneIn:player_context",
             "TuneIn:player_context_show_episode?guideId=s1", "TuneIn:browser_context"})
        changes.follow(QLatin1String(other));
    title(entry("s1"_s));
    EXPECT_TRUE(invoke(entry("s1"_s)).error.isEmpty());
    const QString reset = " -1 -1"_s;
    EXPECT_THAT(changes.seen(),
        ElementsAre("TuneIn:browse/uri/Browse.ashx?c=presets&veskDisplayName=Mine"_s + reset,
            "TuneIn:player_context?guideId=s1"_s + reset,
            "TuneIn:browser_context?guideId=s1&more=x"_s + reset));
}

TEST_F(TuneInPresetsTest, AnswerAfterTheNotifications)
{
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    QMap<QString, bool> answeredWhenTold;
    std::vector<std::unique_ptr<CMSubscription>> subscriptions;
    for (const char *screen : {"TuneIn:browse/uri/Browse.ashx?c=presets",
             "TuneIn:player_context?guideId=s1", "TuneIn:browser_context?guideId=s1"}) {
        subscriptions.push_back(CMRoot()->subscribeDirectly(
            path(QLatin1String(screen)), [&answeredWhenTold, data](const CMChange &change) {
                if (change.kind == CMSubscribe::RowsChangeReset())
                    answeredWhenTold.insert(change.path.toEncoded(), data->isFinished());
            }));
    }
    title(entry("s1"_s));
    EXPECT_TRUE(isAnsweredOnReturn(entry("s1"_s), data));
    EXPECT_EQ(answeredWhenTold,
        (QMap<QString, bool> {{"TuneIn:browse/uri/Browse.ashx?c=presets"_s, false},
            {"TuneIn:player_context?guideId=s1"_s, false},
            {"TuneIn:browser_context?guideId=s1"_s, false}}));
}

TEST_F(TuneInPresetsTest, AreAnsweredWhenTheActivationReturns)
{
    title(entry("s1"_s));
    server().clearRequests();
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    ASSERT_TRUE(isAnsweredOnReturn(entry("s1"_s), data));
    EXPECT_TRUE(data->error().isEmpty());
    EXPECT_TRUE(data->value().isNull());
    expectChanged("add", "s1");

    answer("/Preset.ashx", QByteArray(R"({"head":{"status":"403"},"body":[]})"));
    const auto refused = std::make_shared<CMReplyData<QVariant>>();
    ASSERT_TRUE(isAnsweredOnReturn(entry("s1"_s), refused));
    EXPECT_EQ(refused->error().message().toString(), "Access forbidden."_s);
}

TEST_F(TuneInPresetsTest, NotifyMenusOfATopicByItsOwnGuideId)
{
    Changes changes;
    changes.follow("TuneIn:player_context?guideId=t1"_s);
    changes.follow("TuneIn:player_context?guideId=s5"_s);
    title(entry("t1"_s, "s5"_s));
    invoke(entry("t1"_s, "s5"_s));
    EXPECT_EQ(changes.seen().size(), 1);
    EXPECT_TRUE(changes.seen().constFirst().startsWith("TuneIn:player_context?guideId=t1 "_s));
}

TEST_F(TuneInPresetsTest, NotifyNothingWhenTheChangeFailed)
{
    Changes changes;
    changes.follow("TuneIn:browser_context?guideId=s1"_s);
    changes.follow("TuneIn:player_context?guideId=s1"_s);
    changes.follow("TuneIn:browse/uri/Browse.ashx?c=presets"_s);
    title(entry("s1"_s));
    answer("/Preset.ashx", QByteArray(R"({"head":{"status":"400","fault":"no"},"body":[]})"));
    EXPECT_FALSE(invoke(entry("s1"_s)).error.isEmpty());
    EXPECT_THAT(changes.seen(), IsEmpty());
}

TEST_F(TuneInPresetsTest, KeepOneCommandPerMenu)
{
    title(entry("s1"_s, {}, "player_context"_s));
    server().clearRequests();
    EXPECT_FALSE(invoke(entry("s1"_s)).error.isEmpty());
    EXPECT_TRUE(invoke(entry("s1"_s, {}, "player_context"_s)).error.isEmpty());
    expectChanged("add", "s1");
}

TEST_F(TuneInPresetsTest, LeaveOutAnEmptyPartnerId)
{
    stop();
    set(VeskTuneInPartnerIdPath(), QString());
    start();
    title(entry("s1"_s));
    invoke(entry("s1"_s));
    expectRequests({"GET /Describe.ashx?id=s1&render=json&serial=ABC",
        "GET /Preset.ashx?c=add&render=json&serial=ABC&id=s1"});
}

TEST_F(TuneInPresetsTest, HaveOneSlot)
{
    const QMetaObject &meta = TuneInAddRemovePresetsNode::staticMetaObject;
    EXPECT_STREQ(meta.className(), "TuneInAddRemovePresetsNode");
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 1);
    EXPECT_EQ(meta.method(meta.methodOffset()).methodSignature(),
        QByteArray("on_node_invoke(CMSetDataRequest)"));
    EXPECT_NE(meta.method(meta.methodOffset()).parameterType(0), int(QMetaType::UnknownType));
}
