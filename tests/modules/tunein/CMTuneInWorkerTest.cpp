// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/nodes/CMUINode.h"
#include "api/nodes/CMValueItem.h"
#include "api/tunein/VeskTuneInPaths.h"
#include "api/values/MimeTypes.h"
#include "api/values/VeskValuePaths.h"
#include "modules/tunein/TuneInBrowseNode.h"
#include "modules/tunein/TuneInContextNode.h"
#include "modules/tunein/TuneInHttpClient.h"
#include "tests/modules/tunein/ProcessUsage.h"
#include "tests/modules/tunein/TuneInFixture.h"

#include <QMetaMethod>
#include <QSet>

using testing::ElementsAre;

namespace {

const QString Context = "CMTuneInWorker::CMTuneInWorker(const QVariantHash&)"_s;
const QByteArray OneStation = screen(
    R"({"element":"outline","type":"audio","text":"Example FM","guide_id":"s1","item":"station",)"
    R"("URL":"http://opml.radiotime.com/Tune.ashx?id=s1"})");

class CMTuneInWorkerTest : public TuneInFixture {
protected:
    VeskMetaData metaData(const QString &path)
    {
        return VeskMediaData(role(path, "mediaData"_s).toHash()).metaData();
    }

    void expectTitle(const QString &path, const char *title)
    {
        EXPECT_EQ(
            TrString::fromVariant(role(path, "title"_s)), TrString(Context, QLatin1String(title)))
            << path.toStdString();
    }

    /// What the node at \a path itself answers, even if it redirects to another.
    QVariant own(const QString &path, const QString &role)
    {
        QVariant value;
        onWorker([&] {
            auto *node = dynamic_cast<CMUINode *>(worker()->nodes()->find(::path(path)));
            ASSERT_NE(node, nullptr) << path.toStdString();
            value = node->getRoleData(role, {});
        });
        return value;
    }

    QStringList nodePaths()
    {
        QStringList paths;
        onWorker([&] {
            const QList<CMNode *> nodes = worker()->nodes()->all();
            for (const CMNode *node : nodes)
                paths.append(node->path().toEncoded());
        });
        return paths;
    }
};

} // namespace

TEST_F(CMTuneInWorkerTest, EntryLogsTheNameAndUsesItForNothingElse)
{
    start();
    EXPECT_TRUE(
        log().contains("TRACE Enter void* worker_create(const char*, void*): name: TuneIn"_s));
    EXPECT_TRUE(
        log().contains("TRACE Enter CMTuneInWorker::CMTuneInWorker(const QVariantHash&): "_s));
    EXPECT_EQ(worker()->name(), "TuneIn"_s);
}

TEST_F(CMTuneInWorkerTest, EntryAcceptsANullName)
{
    WorkerThread thread([]() -> QObject * {
        QVariantHash config = defaultConfig();
        return static_cast<CMTuneInWorker *>(worker_create(nullptr, &config));
    });
    EXPECT_TRUE(log().contains("TRACE Enter void* worker_create(const char*, void*): name: "_s));
    EXPECT_EQ(static_cast<CMTuneInWorker *>(thread.object())->name(), "TuneIn"_s);
}

TEST_F(CMTuneInWorkerTest, LogsTheEntryThenTheConstructorThenTheSettings)
{
    start();
    QStringList lines = log().lines();
    const int entry
        = lines.indexOf("TRACE Enter void* worker_create(const char*, void*): name: TuneIn"_s);
    const int constructor
        = lines.indexOf("TRACE Enter CMTuneInWorker::CMTuneInWorker(const QVariantHash&): "_s);
    const int settings = lines.indexOf("DEBUG Configuration: Partner ID: 'partner', SN: 'ABC', "
                                       "supported streams: 'mp3,aac'"_s);
    EXPECT_EQ(entry, 0);
    EXPECT_LT(entry, constructor);
    EXPECT_LT(constructor, settings);
}

TEST_F(CMTuneInWorkerTest, NamesTheSourceFileOfEachRecordWithoutExtension)
{
    start();
    const auto sourceOf = [this](const QString &line) {
        const int record = log().lines().indexOf(line);
        return log().sources().value(record).section(QLatin1Char(':'), 0, 0);
    };
    EXPECT_EQ(sourceOf("TRACE Enter CMTuneInWorker::CMTuneInWorker(const QVariantHash&): "_s),
        "modules/tunein/cb_tunein"_s);
    EXPECT_EQ(sourceOf("DEBUG Configuration: Partner ID: 'partner', SN: 'ABC', "
                       "supported streams: 'mp3,aac'"_s),
        "modules/tunein/TuneInSettings"_s);
}

TEST_F(CMTuneInWorkerTest, StartsOneThreadNamedTuneInHttp)
{
    // The kernel still lists a thread for a moment after it was joined, such as an earlier test's.
    const auto threads = [] { return ProcessUsage::threadNames().count("TuneInHttp"_s); };
    ASSERT_TRUE(spinUntil([&] { return threads() == 0; }));
    start();
    EXPECT_EQ(threads(), 1);
}

TEST_F(CMTuneInWorkerTest, HasExactlyThreePrivateSlotsAndNothingElseOfItsOwn)
{
    const QMetaObject &meta = CMTuneInWorker::staticMetaObject;
    EXPECT_STREQ(meta.className(), "CMTuneInWorker");
    EXPECT_STREQ(meta.superClass()->className(), "CMNodesWorker");
    EXPECT_EQ(meta.propertyCount(), meta.propertyOffset());
    QList<QByteArray> slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        EXPECT_EQ(meta.method(i).methodType(), QMetaMethod::Slot);
        EXPECT_EQ(meta.method(i).access(), QMetaMethod::Private);
        slotNames.append(meta.method(i).methodSignature());
    }
    EXPECT_THAT(slotNames,
        ElementsAre("on_networkStateConnectedItem_changed(VeskValue)",
            "on_listeningDurationTimer_timeout()", "handleStateChange(CMSetDataRequest)"));
}

TEST_F(CMTuneInWorkerTest, StartsWithAnIdleTimerAndOneSubscription)
{
    start();
    onWorker([this] {
        const QList<QTimer *> timers = worker()->findChildren<QTimer *>();
        ASSERT_EQ(timers.size(), 1);
        EXPECT_FALSE(timers.constFirst()->isActive());
        EXPECT_EQ(worker()->findChildren<CMValueItem *>().size(), 1);
    });
    EXPECT_NE(worker()->httpClient(), nullptr);
    EXPECT_EQ(worker()->settings().serviceId(), "tunein"_s);
}

TEST_F(CMTuneInWorkerTest, RegistersItsNodesInOrder)
{
    start();
    const QStringList expected {"TuneIn:"_s, "TuneIn:browse"_s, "TuneIn:player_context"_s,
        "TuneIn:player_context_show_episode"_s, "TuneIn:browser_context"_s, "TuneIn:searches"_s,
        "TuneIn:search/search"_s, "TuneIn:account"_s, "TuneIn:testing"_s};
    QStringList found;
    for (const QString &node : nodePaths()) {
        if (expected.contains(node))
            found.append(node);
    }
    EXPECT_EQ(found, expected);
    for (const char *node :
        {"TuneIn:testing_/aa1", "TuneIn:testing_/aa2", "TuneIn:testing/unreliableStreams",
            "TuneIn:testing_/list_of_genres", "TuneIn:testing_/searches",
            "player:tunein/stateChange", "TuneIn:player_context/presets",
            "TuneIn:player_context_show_episode/presets", "TuneIn:browser_context/presets"})
        EXPECT_TRUE(nodePaths().contains(QLatin1String(node))) << node;
}

TEST_F(CMTuneInWorkerTest, ExposesItsSharedNodes)
{
    start();
    onWorker([this] {
        EXPECT_EQ(worker()->playerContextNode()->path(), path("TuneIn:player_context"_s));
        EXPECT_EQ(worker()->playerContextShowEpisodeNode()->path(),
            path("TuneIn:player_context_show_episode"_s));
        EXPECT_EQ(worker()->browserContextNode()->path(), path("TuneIn:browser_context"_s));
    });
    EXPECT_EQ(browseNode()->path(), path("TuneIn:browse"_s));
}

TEST_F(CMTuneInWorkerTest, TitlesItsNodes)
{
    start();
    expectTitle("TuneIn:browse"_s, "TuneIn");
    expectTitle("TuneIn:searches"_s, "Station, Show, Song, or Artist");
    expectTitle("TuneIn:search/search"_s, "Search Stations, Shows, Songs, or Artists");
    expectTitle("TuneIn:testing"_s, "TuneIn testing");
    expectTitle("TuneIn:testing_/aa1"_s, "Browse in various languages");
    expectTitle("TuneIn:testing_/aa2"_s, "Different stream types");
    expectTitle("TuneIn:testing/unreliableStreams"_s, "Unreliable streams");
    expectTitle("TuneIn:testing_/list_of_genres"_s, "List of all genres");
    expectTitle("TuneIn:testing_/searches"_s, "Search");
}

TEST_F(CMTuneInWorkerTest, LeavesRootMenusAndAccountUntitled)
{
    start();
    for (const char *node : {"TuneIn:", "TuneIn:player_context",
             "TuneIn:player_context_show_episode", "TuneIn:browser_context"})
        EXPECT_TRUE(own(QLatin1String(node), "title"_s).isNull()) << node;
    EXPECT_TRUE(role("TuneIn:account"_s, "title"_s).isNull());
}

TEST_F(CMTuneInWorkerTest, PutsTheServiceIdIntoTheMediaDataOfItsNodes)
{
    start();
    for (const char *node :
        {"TuneIn:browse", "TuneIn:player_context", "TuneIn:player_context_show_episode",
            "TuneIn:browser_context", "TuneIn:searches", "TuneIn:testing",
            "TuneIn:testing/unreliableStreams", "TuneIn:browser_context/presets"}) {
        const VeskMetaData meta = metaData(QLatin1String(node));
        EXPECT_EQ(meta.serviceID(), "tunein"_s) << node;
        EXPECT_EQ(meta.size(), 1) << node;
    }
}

TEST_F(CMTuneInWorkerTest, GivesNoMediaDataToRedirectsAndTheAccount)
{
    start();
    for (const char *node : {"TuneIn:", "TuneIn:search/search", "TuneIn:testing_/aa1",
             "TuneIn:testing_/aa2", "TuneIn:testing_/list_of_genres", "TuneIn:testing_/searches"})
        EXPECT_TRUE(own(QLatin1String(node), "mediaData"_s).isNull()) << node;
    EXPECT_TRUE(role("TuneIn:account"_s, "mediaData"_s).isNull());
}

TEST_F(CMTuneInWorkerTest, UsesAnEmptyServiceIdWhenTheConfigurationHasNone)
{
    start(QVariantHash());
    EXPECT_EQ(worker()->settings().serviceId(), QString());
    for (const char *node : {"TuneIn:browse", "TuneIn:player_context", "TuneIn:searches",
             "TuneIn:testing", "TuneIn:testing/unreliableStreams"}) {
        const VeskMetaData meta = metaData(QLatin1String(node));
        EXPECT_TRUE(meta.contains("serviceID"_s)) << node;
        EXPECT_EQ(meta.serviceID(), QString()) << node;
    }
}

TEST_F(CMTuneInWorkerTest, ReadsTheServiceIdAsText)
{
    start({{VeskService_Id(), 42}});
    EXPECT_EQ(worker()->settings().serviceId(), "42"_s);
}

TEST_F(CMTuneInWorkerTest, ShowsTheRowsOfBrowseAtItsRoot)
{
    answer("/Browse.ashx", OneStation);
    start();
    const QStringList roles {"title"_s, "type"_s, "path"_s, "mediaData"_s};
    const RowsAnswer root = rows("TuneIn:"_s, roles);
    EXPECT_TRUE(root.error.isEmpty());
    EXPECT_EQ(root.texts(), QStringList({"My Favorites"_s, "Example FM"_s}));
    EXPECT_EQ(root.rows, rows("TuneIn:browse"_s, roles).rows);
    EXPECT_EQ(server().requestLines().constFirst(), "GET /Browse.ashx?" + CommonItems);
}

TEST_F(CMTuneInWorkerTest, OffersOneSearch)
{
    start();
    const RowsAnswer searches
        = rows("TuneIn:searches"_s, {"title"_s, "path"_s, "query"_s, "queryPath"_s, "type"_s});
    ASSERT_EQ(searches.count, 1);
    ASSERT_EQ(searches.rows.size(), 1);
    EXPECT_EQ(searches.texts(), QStringList("Search Stations, Shows, Songs, or Artists"_s));
    const QVariantList row = searches.rows.constFirst();
    EXPECT_EQ(row.at(1).toString(), "TuneIn:search/search"_s);
    EXPECT_EQ(row.at(2).toString(), "query"_s);
    EXPECT_EQ(row.at(3).toString(), "TuneIn:browse?veskTuneInMethod=search"_s);
    EXPECT_EQ(row.at(4).toInt(), VeskRolesType::Query());
    EXPECT_EQ(role("TuneIn:searches"_s, "containerType"_s).toInt(), 101);
}

TEST_F(CMTuneInWorkerTest, OffersTheSameSearchInTheTestTree)
{
    start();
    const QStringList roles {"title"_s, "path"_s, "query"_s, "queryPath"_s};
    const RowsAnswer test = rows("TuneIn:testing_/searches"_s, roles);
    EXPECT_EQ(test.count, 1);
    EXPECT_EQ(test.rows, rows("TuneIn:searches"_s, roles).rows);
}

TEST_F(CMTuneInWorkerTest, ListsTheTestTreeInOrder)
{
    start();
    const RowsAnswer testing = rows("TuneIn:testing"_s, {"title"_s, "path"_s});
    ASSERT_EQ(testing.count, 7);
    EXPECT_EQ(testing.texts(0).mid(0, 5),
        QStringList({"Browse in various languages"_s, "Different stream types"_s,
            "Unreliable streams"_s, "List of all genres"_s, "Search"_s}));
    EXPECT_EQ(testing.texts(1),
        QStringList({"TuneIn:testing_/aa1"_s, "TuneIn:testing_/aa2"_s,
            "TuneIn:testing/unreliableStreams"_s, "TuneIn:testing_/list_of_genres"_s,
            "TuneIn:testing_/searches"_s, VeskTuneInEnabledFixItWizardPath().toEncoded(),
            VeskChildElementsInSingleListPath().toEncoded()}));
}

TEST_F(CMTuneInWorkerTest, RedirectsFromTheTestTreeToItsTargets)
{
    answerAll(OneStation);
    start();
    EXPECT_EQ(rows("TuneIn:testing_/aa1"_s).texts(), QStringList("Example FM"_s));
    EXPECT_EQ(rows("TuneIn:testing_/aa2"_s).texts(), QStringList("Example FM"_s));
    EXPECT_EQ(rows("TuneIn:testing_/list_of_genres"_s).texts(), QStringList("Example FM"_s));
    expectRequests({"GET /Search.ashx?query=aa1&" + CommonItems,
        "GET /Search.ashx?query=aa2&" + CommonItems, "GET /Describe.ashx?c=genres&" + CommonItems});
}

TEST_F(CMTuneInWorkerTest, ListsSixteenUnreliableStreams)
{
    start();
    const RowsAnswer streams = rows(
        "TuneIn:testing/unreliableStreams"_s, {"title"_s, "type"_s, "audioType"_s, "mediaData"_s});
    ASSERT_EQ(streams.count, 16);
    ASSERT_EQ(streams.rows.size(), 16);
    QSet<QString> addresses;
    for (const QVariantList &row : streams.rows) {
        const TrString title = TrString::fromVariant(row.at(0));
        EXPECT_FALSE(title.isEmpty());
        EXPECT_FALSE(title.isTranslatable());
        EXPECT_EQ(row.at(1).toInt(), 3);
        EXPECT_EQ(row.at(2).toInt(), 2);
        const VeskMediaData media(row.at(3).toHash());
        EXPECT_EQ(media.metaData().serviceID(), "tunein"_s);
        EXPECT_EQ(media.metaData().size(), 1);
        ASSERT_EQ(media.resources().size(), 1);
        EXPECT_EQ(media.activeResource().mimeType(), MimeTypes::Audio::m3u());
        EXPECT_TRUE(media.activeResource().uri().startsWith("http"_s));
        addresses.insert(media.activeResource().uri());
    }
    EXPECT_EQ(addresses.size(), 16);
}

TEST_F(CMTuneInWorkerTest, HandlesAStateChangeThroughItsEventLoop)
{
    start();
    const auto data = std::make_shared<CMReplyData<QVariant>>();
    bool answeredAtOnce = true;
    onWorker([&] {
        CMRoot()->request(CMSetDataRequest(VeskTuneInStateChangePath(), VeskRoles::Activate(),
            QVariantHash(), CMReply<QVariant>(data)));
        answeredAtOnce = data->isFinished();
    });
    EXPECT_FALSE(answeredAtOnce);
    EXPECT_TRUE(data->waitForFinished(10000));
    EXPECT_TRUE(data->error().isEmpty());
    EXPECT_TRUE(data->value().isNull());
}

TEST_F(CMTuneInWorkerTest, AnswersUnknownPathsWithAnError)
{
    start();
    EXPECT_FALSE(rows("TuneIn:nothing/here"_s).error.isEmpty());
    EXPECT_FALSE(data("TuneIn:search"_s, {"title"_s}).error.isEmpty());
    EXPECT_FALSE(rows("TuneIn:testing_"_s).error.isEmpty());
}

TEST_F(CMTuneInWorkerTest, ReadsItsSettingsOnce)
{
    answer("/Browse.ashx", OneStation);
    start();
    set(VeskTuneInPartnerIdPath(), "other"_s);
    set(VeskTuneInSupportedStreamsPath(), "ogg"_s);
    set(VeskSystemMemberIdPath(), "XYZ"_s);
    rows("TuneIn:browse"_s);
    expectRequests({"GET /Browse.ashx?" + CommonItems});
}

TEST_F(CMTuneInWorkerTest, IsRemovedFromTheRootWhenDeleted)
{
    start();
    EXPECT_TRUE(CMRoot()->prefixes().contains("TuneIn"_s));
    stop();
    EXPECT_FALSE(CMRoot()->prefixes().contains("TuneIn"_s));
    EXPECT_FALSE(rows("TuneIn:browse"_s).error.isEmpty());
    EXPECT_FALSE(setData(VeskTuneInStateChangePath().toEncoded(), VeskRoles::Activate(), {})
                     .error.isEmpty());
}

TEST_F(CMTuneInWorkerTest, CanBeCreatedAgainAfterDeletion)
{
    answer("/Browse.ashx", OneStation);
    start();
    stop();
    start();
    EXPECT_EQ(rows("TuneIn:browse"_s).texts(), QStringList({"My Favorites"_s, "Example FM"_s}));
}
