// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Library.h"

#include "api/core/Language.h"
#include "api/nodes/CMNodesWorker.h"
#include "api/nodes/CMRootWorker.h"
#include "host/library/Database.h"
#include "host/library/KeptRow.h"
#include "host/library/LibraryScreens.h"
#include "tests/api/nodes/TestNodes.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <set>

namespace {

using testing::HasSubstr;

QString str(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

VeskRoles station(const QString &path)
{
    VeskResource resource;
    resource.setUri(QStringLiteral("http://radio.example/stream"));
    VeskMediaData media;
    media.setResources(VeskList<VeskResource>({resource.toHash()}));
    VeskRoles row;
    row.setType(VeskRolesType::Audio());
    row.setTitle(Language::ntr(path));
    row.setPath(CMPath::fromEncoded(path));
    row.setMediaData(media);
    return row;
}

VeskRoles streamOf(const QString &path, const QString &station)
{
    VeskRoles row = ::station(path);
    VeskRoles matching;
    matching.setPath(CMPath::fromEncoded(station));
    VeskMediaData media = row.mediaData();
    VeskMetaData meta = media.metaData();
    meta.setMatchingMediaRoles(VeskList<VeskRoles>({matching.toHash()}));
    media.setMetaData(meta);
    row.setMediaData(media);
    return row;
}

/// What an answer brought, once it is there.
template <class T>
class Answered {
public:
    Library::Answer<T> answer() const
    {
        return [result = m_result](const Result<T, QString> &given) { *result = given; };
    }
    const Result<T, QString> &wait() const
    {
        QElapsedTimer time;
        time.start();
        while (!*m_result && time.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        return m_result->value();
    }

private:
    std::shared_ptr<std::optional<Result<T, QString>>> m_result
        = std::make_shared<std::optional<Result<T, QString>>>();
};

class LibraryTest : public testing::Test {
protected:
    LibraryTest() { open(); }

    /// As another host.
    void open()
    {
        m_library.reset();
        m_database.reset();
        m_database = std::make_unique<Database>(m_folder.path(), Result<void, files::Problem>());
        m_library = std::make_unique<Library>(m_database.get());
    }
    void hear(const char *path) { m_library->noteHeard(station(str(path))); }

    static std::string paths(const Result<Library::Rows, QString> &rows)
    {
        if (!rows)
            return rows.error().toStdString();
        QStringList list;
        for (const VeskRoles &row : *rows)
            list.append(row.path().toEncoded());
        return list.join(QLatin1Char(' ')).toStdString();
    }
    std::string recents(const char *service = "")
    {
        const Answered<Library::Rows> rows;
        m_library->recents(str(service), rows.answer());
        return paths(rows.wait());
    }
    std::string favorites()
    {
        const Answered<Library::Rows> rows;
        m_library->favorites(rows.answer());
        return paths(rows.wait());
    }
    std::string presets()
    {
        const Answered<QVector<Library::Preset>> presets;
        m_library->presets(presets.answer());
        QStringList list;
        for (const Library::Preset &preset : *presets.wait()) {
            list.append(
                QStringLiteral("%1=%2").arg(preset.number).arg(preset.row.path().toEncoded()));
        }
        return list.join(QLatin1Char(' ')).toStdString();
    }
    std::string addFavorite(const VeskRoles &row)
    {
        const Answered<qint64> id;
        m_library->addFavorite(row, id.answer());
        return id.wait() ? "" : id.wait().error().toStdString();
    }
    std::string addFavorite(const char *path) { return addFavorite(station(str(path))); }
    template <class Call>
    std::string done(Call call)
    {
        const auto result = std::make_shared<std::optional<Result<void, QString>>>();
        call([result](const Result<void, QString> &given) { *result = given; });
        QElapsedTimer time;
        time.start();
        while (!*result && time.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        return result->value() ? "" : (*result)->error().toStdString();
    }
    std::string save(int number, const char *path)
    {
        return done([&](const Library::Done &done) {
            m_library->savePreset(number, station(str(path)), done);
        });
    }
    QJsonObject exported()
    {
        const Answered<QJsonObject> library;
        m_library->exportAll(library.answer());
        return *library.wait();
    }
    std::string import(const QJsonObject &json)
    {
        const Answered<Library::Imported> imported;
        m_library->importAll(json, imported.answer());
        const auto &result = imported.wait();
        if (!result)
            return result.error().toStdString();
        return std::to_string(result->favorites) + " and " + std::to_string(result->presets);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Library> m_library;
};

TEST_F(LibraryTest, TheLatestIsFirstAndEachItemIsThereOnce)
{
    hear("a:1");
    hear("b:1");
    hear("a:2");
    EXPECT_EQ(recents(), "a:2 b:1 a:1");
    hear("a:1");
    EXPECT_EQ(recents(), "a:1 a:2 b:1");
    EXPECT_EQ(recents("a"), "a:1 a:2");
    open();
    EXPECT_EQ(recents(), "a:1 a:2 b:1");
}

TEST_F(LibraryTest, AStreamOfAStationIsTheStation)
{
    m_library->noteHeard(station(str("a:1")));
    m_library->noteHeard(streamOf(str("a:streams?n=2"), str("a:1")));
    EXPECT_EQ(recents(), "a:streams?n=2");
}

TEST_F(LibraryTest, TwoHundredAreKeptOfEachServiceAndShownOfAll)
{
    for (int i = 0; i < 5; ++i)
        m_library->noteHeard(station(QStringLiteral("b:%1").arg(i)));
    for (int i = 0; i < Library::MaxRecents + 10; ++i) {
        m_library->noteHeard(station(QStringLiteral("a:%1").arg(i)));
        if (i % 50 == 0)
            recents(); // no more than the database takes at once
    }
    const Answered<Library::Rows> all;
    m_library->recents(QString(), all.answer());
    ASSERT_EQ(all.wait()->size(), Library::MaxRecents);
    EXPECT_EQ(all.wait()->first().path(), CMPath::fromEncoded(str("a:209")));
    EXPECT_EQ(all.wait()->last().path(), CMPath::fromEncoded(str("a:10")));
    EXPECT_EQ(recents("b"), "b:4 b:3 b:2 b:1 b:0");
}

TEST_F(LibraryTest, ServicesAreNamedByTheirIds)
{
    m_library->setPrefixOfService([](const QString &id) {
        return id == QStringLiteral("first") ? QStringLiteral("a") : QString();
    });
    hear("a:1");
    hear("B:1");
    EXPECT_EQ(recents("first"), "a:1");
    EXPECT_EQ(recents("b"), "B:1");
    EXPECT_EQ(recents("c"), "");
    EXPECT_EQ(
        done([&](const Library::Done &done) { m_library->clearRecents(str("first"), done); }), "");
    EXPECT_EQ(recents(), "B:1");
    EXPECT_EQ(done([&](const Library::Done &done) { m_library->clearRecents({}, done); }), "");
    EXPECT_EQ(recents(), "");
}

TEST_F(LibraryTest, FavoritesKeepTheirOrder)
{
    EXPECT_EQ(addFavorite("a:1"), "");
    EXPECT_EQ(addFavorite("b:1"), "");
    EXPECT_EQ(addFavorite("a:2"), "");
    EXPECT_EQ(addFavorite("a:1"), "");
    EXPECT_EQ(favorites(), "a:1 b:1 a:2");
    const Answered<bool> is;
    m_library->isFavorite(CMPath::fromEncoded(str("b:1")), is.answer());
    EXPECT_TRUE(*is.wait());
    const auto remove = [&](const Library::Done &done) {
        m_library->removeFavorite(CMPath::fromEncoded(str("b:1")), done);
    };
    EXPECT_EQ(done(remove), "");
    EXPECT_EQ(done(remove), "");
    EXPECT_EQ(favorites(), "a:1 a:2");
    const Answered<bool> still;
    m_library->isFavorite(CMPath::fromEncoded(str("b:1")), still.answer());
    EXPECT_FALSE(*still.wait());
}

TEST_F(LibraryTest, WhatCannotBePlayedAgainIsNotKept)
{
    VeskRoles row = station(str("a:1"));
    row.setMediaData({});
    EXPECT_EQ(addFavorite(row), "This cannot be kept.");
    m_library->noteHeard(row);
    EXPECT_EQ(recents(), "");
    EXPECT_EQ(favorites(), "");
}

TEST_F(LibraryTest, PresetsAreReplacedAndCleared)
{
    EXPECT_EQ(save(3, "a:1"), "");
    EXPECT_EQ(save(1, "b:1"), "");
    EXPECT_EQ(save(3, "a:2"), "");
    EXPECT_EQ(presets(), "1=b:1 3=a:2");
    const Answered<VeskRoles> row;
    m_library->preset(3, row.answer());
    EXPECT_EQ(*row.wait(), *KeptRow::fromJson(KeptRow::toJson(station(str("a:2")))));
    const Answered<VeskRoles> none;
    m_library->preset(2, none.answer());
    EXPECT_EQ(none.wait().error(), str("Preset 2 is empty."));
    EXPECT_EQ(done([&](const Library::Done &done) { m_library->clearPreset(3, done); }), "");
    open();
    EXPECT_EQ(presets(), "1=b:1");
}

TEST_F(LibraryTest, WhatIsExportedCanBeImported)
{
    EXPECT_EQ(addFavorite("a:1"), "");
    EXPECT_EQ(addFavorite("b:1"), "");
    EXPECT_EQ(save(12, "c:1"), "");
    const QJsonObject json = exported();
    EXPECT_EQ(json.value(str("version")).toInt(), 1);

    QTemporaryDir other;
    m_library.reset();
    m_database = std::make_unique<Database>(other.path(), Result<void, files::Problem>());
    m_library = std::make_unique<Library>(m_database.get());
    EXPECT_EQ(addFavorite("b:1"), "");
    EXPECT_EQ(import(json), "1 and 1");
    EXPECT_EQ(favorites(), "b:1 a:1");
    EXPECT_EQ(presets(), "12=c:1");
    EXPECT_EQ(import(json), "0 and 1");
}

TEST_F(LibraryTest, NothingOfAHostileImportStays)
{
    const QJsonObject good = KeptRow::toJson(station(str("a:1")));
    QJsonObject script = good;
    script.insert(str("icon"), str("javascript:alert(1)"));
    const auto library = [](const QJsonArray &favorites, const QJsonArray &presets) {
        return QJsonObject {
            {str("version"), 1}, {str("favorites"), favorites}, {str("presets"), presets}};
    };
    const auto preset = [&good](const QJsonValue &number) {
        return QJsonObject {{str("number"), number}, {str("row"), good}};
    };
    QJsonArray many;
    for (int i = 0; i <= Library::MaxFavorites; ++i)
        many.append(KeptRow::toJson(station(QStringLiteral("a:%1").arg(i))));
    struct Case {
        QJsonObject json;
        const char *error;
    };
    const std::vector<Case> cases {
        {{}, "this is no library"},
        {{{str("version"), 2}, {str("favorites"), QJsonArray {good}}}, "this is no library"},
        {{{str("version"), 1}, {str("favorites"), good}}, "this is no library"},
        {library({good, 7}, {}), "entry 2 of \"favorites\""},
        {library({good, script}, {}), "entry 2 of \"favorites\""},
        {library({good}, {preset(0)}), "entry 1 of \"presets\""},
        {library({good}, {preset(1), preset(13)}), "entry 2 of \"presets\""},
        {library({good}, {preset(str("1"))}), "entry 1 of \"presets\""},
        {library({good}, {7}), "entry 1 of \"presets\""},
        {library(many, {}), "this is no library"},
    };
    for (const Case &each : cases) {
        EXPECT_THAT(import(each.json), HasSubstr(each.error));
        EXPECT_EQ(favorites(), "");
        EXPECT_EQ(presets(), "");
    }
    EXPECT_EQ(addFavorite("b:1"), "");
    many.removeLast();
    EXPECT_EQ(import(library(many, {preset(1)})), "There are 1000 favorites already.");
    EXPECT_EQ(favorites(), "b:1");
    EXPECT_EQ(presets(), "");
}

TEST_F(LibraryTest, AnyClientReadsTheScreensAndIsToldOfChanges)
{
    CMRootWorker root;
    CMNodesWorker worker({}, QStringLiteral("host"));
    const LibraryScreens screens(m_library.get(), m_database.get(), worker.nodes());
    const auto titles = [&](const char *path) {
        const Answer answer;
        CMRoot()->request(CMGetRowsRequest(
            CMPath::fromEncoded(str(path)), {VeskRoles::Title()}, 0, 99, answer.reply()));
        answer.spin();
        QStringList list;
        const QVariantList rows = VeskRowsRoles(answer.value().toHash()).rows();
        for (const QVariant &row : rows)
            list.append(TrString::fromVariant(row.toList().value(0)).toString());
        return list.join(QLatin1Char(' ')).toStdString();
    };
    EXPECT_EQ(titles("host:recents"), "");
    EXPECT_EQ(titles("host:library"), "Favorites Recently played");

    QObject client;
    std::vector<std::string> changes;
    std::vector<std::unique_ptr<CMSubscription>> subscriptions;
    for (const char *path : {"host:recents", "host:recents?service=a", "host:favorites"}) {
        subscriptions.push_back(CMRoot()->subscribe(
            CMPath::fromEncoded(str(path)), &client, [&](const CMChange &change) {
                changes.push_back(
                    (change.path.toEncoded() + QLatin1Char(' ') + change.kind).toStdString());
            }));
    }
    hear("a:1");
    hear("b:1");
    EXPECT_EQ(titles("host:recents"), "b:1 a:1");
    EXPECT_EQ(titles("host:recents?service=a"), "a:1");
    QCoreApplication::processEvents();
    // Twice each, or once where the first one was still to be delivered when the second one came.
    EXPECT_THAT(std::set<std::string>(changes.begin(), changes.end()),
        testing::UnorderedElementsAre(
            "host:recents rowsReset", "host:recents?service=a rowsReset"));
    changes.clear();
    EXPECT_EQ(addFavorite("a:1"), "");
    QCoreApplication::processEvents();
    EXPECT_THAT(changes, testing::ElementsAre("host:favorites rowsReset"));
    EXPECT_EQ(titles("host:favorites"), "a:1");
}

} // namespace
