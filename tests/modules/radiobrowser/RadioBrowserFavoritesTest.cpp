// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskRoles.h"
#include "api/web/VeskJson.h"
#include "tests/modules/radiobrowser/RadioBrowserFixture.h"

#include <mutex>

using testing::HasSubstr;

namespace {

/// What the host keeps for the plug-in, in memory. Refuses writes when it is told to.
class StoreOfTheTest : public CMAbstractWorker {
public:
    void request(CMRequest request) override
    {
        const CMSetDataRequest setData(request);
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_refuses)
            return request.reply().setError(CMError(TrString("Test", "Not saved: it is full.")));
        const QVariantHash changes = setData.value().toHash();
        for (auto it = changes.constBegin(); it != changes.constEnd(); ++it) {
            if (it->isValid())
                m_values.insert(it.key(), *it);
            else
                m_values.remove(it.key());
        }
        request.reply().setValue(QVariant());
    }

    QVariantHash config() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return {{text("path"), text("store:radiobrowser")}, {text("values"), m_values}};
    }
    void set(const QString &key, const QVariant &value)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_values.insert(key, value);
    }
    void refuse(bool refuses)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_refuses = refuses;
    }

private:
    mutable std::mutex m_mutex;
    QVariantHash m_values;
    bool m_refuses = false;
};

QString uuid(int number)
{
    return radioBrowserStation(number).value(text("stationuuid")).toString();
}

class RadioBrowserFavoritesTest : public RadioBrowserFixture {
protected:
    RadioBrowserFavoritesTest()
        : m_server([](const ScriptedServer::Request &request) {
            // The stations that the request names, or the first three.
            QVariantList found;
            const QStringList query = queryOf(request);
            for (int i = 1; i <= 3; ++i) {
                if (request.path() != "/json/stations/byuuid"
                    || query.contains(text("uuids=") + uuid(i)))
                    found.append(radioBrowserStation(i));
            }
            return radioBrowserAnswer(found)(request);
        })
    {
        CMRoot()->addWorker(text("store"), &m_store);
        startAgain();
    }
    ~RadioBrowserFavoritesTest() override
    {
        stop();
        CMRoot()->removeWorker(&m_store);
    }

    /// A new worker, as after a restart, with what is in the store.
    void startAgain()
    {
        startWithConfig({{text("server"), addressOf(m_server)}, {text("store"), m_store.config()}},
            [] { return QStringList(); });
    }

    static QString menuOf(int station)
    {
        return text("RadioBrowser:menu?station=") + uuid(station);
    }
    static QString entryOf(int station)
    {
        return text("RadioBrowser:menu/favorite?station=") + uuid(station);
    }
    static CMError toggle(int station)
    {
        return setData(CMPath::fromEncoded(entryOf(station)), VeskRoles::Activate(), QVariant());
    }
    static QStringList favorites() { return rows(text("RadioBrowser:favorites")).titles(); }

    StoreOfTheTest m_store;
    ScriptedServer m_server;
};

} // namespace

TEST_F(RadioBrowserFavoritesTest, AStationsMenuAddsAndRemovesIt)
{
    EXPECT_EQ(rows(text("RadioBrowser:")).titles().value(1), text("Favorites"));
    const RadioBrowserRows stations = rows(text("RadioBrowser:stations"));
    ASSERT_EQ(stations.rows.size(), 3);
    EXPECT_EQ(stations.rows.at(1).context().path().toEncoded(), menuOf(2));
    EXPECT_EQ(
        stations.rows.at(1).mediaData().metaData().contentPlayContextPath().toEncoded(), menuOf(2))
        << "for the player";
    RadioBrowserRows menu = rows(menuOf(2));
    ASSERT_EQ(menu.titles(), QStringList(text("Add to favorites")));
    EXPECT_EQ(menu.rows.at(0).type(), VeskRolesType::Activate());
    EXPECT_EQ(menu.rows.at(0).path().toEncoded(), entryOf(2));
    EXPECT_EQ(favorites(), QStringList());

    EXPECT_TRUE(toggle(2).isEmpty());
    EXPECT_EQ(favorites(), QStringList(text("Station 2")));
    EXPECT_EQ(rows(menuOf(2)).titles(), QStringList(text("Remove from favorites")));
    EXPECT_EQ(rows(menuOf(1)).titles(), QStringList(text("Add to favorites")));
    EXPECT_TRUE(toggle(1).isEmpty());
    EXPECT_EQ(favorites(), QStringList({text("Station 2"), text("Station 1")}))
        << "in the order in which they were added";
    EXPECT_TRUE(toggle(2).isEmpty());
    EXPECT_EQ(favorites(), QStringList(text("Station 1")));
    EXPECT_EQ(rows(menuOf(2)).titles(), QStringList(text("Add to favorites")));
}

TEST_F(RadioBrowserFavoritesTest, AFavoriteIsTheRowThatItWasInTheList)
{
    EXPECT_TRUE(toggle(3).isEmpty());
    const RadioBrowserRows list = rows(text("RadioBrowser:stations"));
    const RadioBrowserRows kept = rows(text("RadioBrowser:favorites"));
    ASSERT_EQ(kept.rows.size(), 1);
    EXPECT_EQ(kept.rows.at(0), list.rows.at(2));
    EXPECT_EQ(rows(text("RadioBrowser:favorites"), 1, 5).rows.size(), 0);
    EXPECT_EQ(rows(text("RadioBrowser:favorites"), 1, 5).count, 1);
}

TEST_F(RadioBrowserFavoritesTest, ARestartKeepsThem)
{
    EXPECT_TRUE(toggle(3).isEmpty());
    EXPECT_TRUE(toggle(1).isEmpty());
    startAgain();
    m_server.setHandler(radioBrowserCode(500)); // they need no server
    EXPECT_EQ(favorites(), QStringList({text("Station 3"), text("Station 1")}));
    EXPECT_EQ(rows(menuOf(3)).titles(), QStringList(text("Remove from favorites")));
    EXPECT_TRUE(toggle(3).isEmpty());
    startAgain();
    EXPECT_EQ(favorites(), QStringList(text("Station 1")));
}

TEST_F(RadioBrowserFavoritesTest, ChangesAreTold)
{
    QObject context;
    int screen = 0;
    int menu = 0;
    const auto screens = CMRoot()->subscribe(CMPath::fromEncoded(text("RadioBrowser:favorites")),
        &context, [&](const CMChange &) { ++screen; });
    const auto menus = CMRoot()->subscribe(
        CMPath::fromEncoded(menuOf(1)), &context, [&](const CMChange &) { ++menu; });
    EXPECT_TRUE(toggle(1).isEmpty());
    EXPECT_TRUE(spinUntil([&] { return screen > 0 && menu > 0; }));
}

TEST_F(RadioBrowserFavoritesTest, WhatCannotBeKeptIsTold)
{
    m_store.refuse(true);
    EXPECT_EQ(toggle(1).message().toString(), text("Not saved: it is full."));
    EXPECT_EQ(favorites(), QStringList());
    EXPECT_EQ(rows(menuOf(1)).titles(), QStringList(text("Add to favorites")));
    m_store.refuse(false);
    m_server.setHandler(radioBrowserCode(404));
    EXPECT_EQ(toggle(1).message().toString(), text("Radio Browser refused the request."));
    for (const QVariantList &answer :
        {QVariantList {}, QVariantList {radioBrowserStation(2)}, QVariantList {5},
            QVariantList {radioBrowserStation(1, {{text("url_resolved"), 7}})}}) {
        m_server.setHandler(radioBrowserAnswer(answer));
        EXPECT_EQ(
            toggle(1).message().toString(), text("Radio Browser does not know this station."));
    }
    EXPECT_EQ(setData(CMPath::fromEncoded(text("RadioBrowser:menu/favorite?station=x")),
                  VeskRoles::Activate(), QVariant())
                  .message()
                  .toString(),
        text("Radio Browser does not know this station."));
    EXPECT_EQ(favorites(), QStringList());
}

TEST_F(RadioBrowserFavoritesTest, ValuesThatCannotBeReadAreLeftOut)
{
    EXPECT_TRUE(toggle(1).isEmpty());
    m_store.set(uuid(2), QByteArray("{"));
    m_store.set(uuid(3), QByteArray("[1]"));
    m_store.set(text("x"), VeskJson::write(QVariantHash {{text("name"), text("No station")}}));
    startAgain();
    EXPECT_EQ(favorites(), QStringList(text("Station 1")));
}

TEST_F(RadioBrowserFavoritesTest, ThereAreNoneWithoutAStore)
{
    start(addressOf(m_server));
    EXPECT_FALSE(rows(text("RadioBrowser:")).titles().contains(text("Favorites")));
    EXPECT_TRUE(rows(text("RadioBrowser:stations")).rows.at(0).context().isEmpty());
    EXPECT_EQ(rows(text("RadioBrowser:favorites")).fullError.name(), CMError::NoNodeName());
}
