// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/CMPath.h"
#include "api/web/VeskJson.h"
#include "tests/support/RawWebSocket.h"
#include "tests/support/Text.h"
#include "tests/system/FavoritesFixture.h"

#include <QDeadlineTimer>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FavoritesSystem : public FavoritesFixture { };

TEST_F(FavoritesSystem, AStationIsAddedAndRemovedByEitherMenu)
{
    const Item item = station();
    ASSERT_EQ(item.guideId, text("s29001"));
    addAndRemove(item.browserMenu, "s29001", "Trial 01 Every Codec");
    addAndRemove(item.playerMenu, "s29001", "Trial 01 Every Codec");
}

TEST_F(FavoritesSystem, AShowIsAddedAndRemovedByItsOwnId)
{
    const Item item = show();
    ASSERT_EQ(item.title, text("Morning Folk"));
    ASSERT_TRUE(CMPath::fromEncoded(item.browserMenu).hasParam(text("sid")));
    addAndRemove(item.browserMenu, "p3016", "Morning Folk");
}

TEST_F(FavoritesSystem, AddingAnEpisodeAddsItsShow)
{
    const Item item = topic();
    ASSERT_EQ(item.guideId, text("t300301"));
    addAndRemove(item.playerMenu, "p3003", "Kettle & Keys");
}

TEST_F(FavoritesSystem, AnEpisodeWithoutShowIsAddedItself)
{
    CMPath path = CMPath::fromEncoded(topic().playerMenu);
    path.removeParam(text("sid"));
    const QString menuPath = path.toEncoded();
    requests();
    EXPECT_EQ(titleIn(menuPath), AddTitle);
    EXPECT_THAT(requests(), ElementsAre(describeRequest("t300301")));
    const QString entry = menu(menuPath).value(0).path;
    requests();
    EXPECT_TRUE(run(entry).contains(text("result")));
    EXPECT_THAT(requests(), ElementsAre(presetRequest("add", "t300301")));
    EXPECT_THAT(favorites(), ElementsAre(HasSubstr("Steam")));

    // The directory describes an episode as an element that cannot be a favorite; if it is a show,
    // it can.
    answerOnce("Describe.ashx", "{\"element\":\"show\",\"is_preset\":\"true\"}");
    EXPECT_EQ(titleIn(menuPath), RemoveTitle);
    requests();
    EXPECT_TRUE(run(entry).contains(text("result")));
    EXPECT_THAT(requests(), ElementsAre(presetRequest("remove", "t300301")));
    EXPECT_THAT(favorites(), ElementsAre(NoFavorites));
}

class FavoritesWithoutPartner : public FavoritesFixture {
protected:
    FavoritesWithoutPartner()
        : FavoritesFixture({text("--set"), text("settings:tunein/partnerId=")})
    {
    }
};

TEST_F(FavoritesWithoutPartner, LeavesThePartnerIdOut)
{
    device = text("&serial=") + serial;
    addAndRemove(station().browserMenu, "s29001", "Trial 01 Every Codec");
}

TEST_F(FavoritesSystem, TheRootMenuBeginsWithTheFavorites)
{
    const QList<Entry> root = menu(text("TuneIn:"));
    ASSERT_GT(root.size(), 1);
    EXPECT_EQ(root.value(0).title, text("Favorites"));
    EXPECT_TRUE(CMPath::fromEncoded(root.value(0).path)
                    .startsWith(CMPath::fromEncoded(text(FavoritesScreen))));

    // The directory's own menu has no favorites.
    answerOnce("Browse.ashx",
        "{\"element\":\"outline\",\"type\":\"link\",\"text\":\"Music\",\"URL\":"
        "\"http://opml.radiotime.com/Browse.ashx?c=music\",\"key\":\"music\"}");
    ASSERT_EQ(product.stopHost(), 0);
    ASSERT_TRUE(product.startHost());
    const QList<Entry> bare = menu(text("TuneIn:"));
    ASSERT_EQ(bare.size(), 2);
    EXPECT_EQ(bare.value(0).title, text("My Favorites"));
    EXPECT_EQ(bare.value(1).title, text("Music"));
    runFirstOf(station().browserMenu);
    EXPECT_EQ(items(bare.value(0).path).value(0).guideId, text("s29001"));
    EXPECT_EQ(items(root.value(0).path).value(0).guideId, text("s29001"));
}

TEST_F(FavoritesSystem, VeskctlAddsAndRemoves)
{
    const QStringList place {text("search:trial 01"), text("0")};
    const auto favorite = [&](const char *what) {
        return product.ctl(QStringList {text("favorite"), text(what)} + place);
    };
    const Outcome added = favorite("add");
    EXPECT_EQ(added.code, 0) << added.err.toStdString();
    EXPECT_THAT(favorites(), ElementsAre(HasSubstr("Trial 01 Every Codec")));
    requests();
    EXPECT_EQ(favorite("add").code, 0);
    EXPECT_THAT(requests(), testing::Not(testing::Contains(HasSubstr("/Preset.ashx"))));
    EXPECT_THAT(product.ctl({text("favorites")}).out.toStdString(), HasSubstr("Trial 01"));
    const Outcome removed = favorite("remove");
    EXPECT_EQ(removed.code, 0) << removed.err.toStdString();
    EXPECT_THAT(requests(), testing::Contains(presetRequest("remove", "s29001")));
    EXPECT_THAT(favorites(), ElementsAre(NoFavorites));
    EXPECT_EQ(favorite("remove").code, 0);

    const Outcome menu = product.ctl(QStringList {text("menu")} + place);
    EXPECT_THAT(menu.out.toStdString(), HasSubstr(AddTitle));
    EXPECT_EQ(product.ctl(QStringList {text("menu"), text("--choose"), text("0")} + place).code, 0);
    EXPECT_THAT(favorites(), ElementsAre(HasSubstr("Trial 01 Every Codec")));
    product.setFault("head-fault@Preset.ashx:403");
    const Outcome failed = favorite("remove");
    EXPECT_EQ(failed.code, 1);
    EXPECT_THAT(failed.err.toStdString(), HasSubstr("Access forbidden."));
}

/// A client that subscribes to changes.
class Subscriber {
public:
    explicit Subscriber(quint16 port)
        : m_socket(port)
    {
    }
    bool subscribe(const QString &path)
    {
        return call(text("subscribe"), {{text("path"), path}}).contains(text("result"));
    }
    /// The "changed" notifications of everything that the host did before this call. A plug-in's
    /// process notifies after its response, so this waits for \a expected notifications.
    QVariantList news(int expected = 0)
    {
        const QDeadlineTimer deadline(5000);
        do {
            call(text("player.state"), {});
        } while (m_news.size() < expected && !deadline.hasExpired());
        QVariantList news;
        news.swap(m_news);
        return news;
    }

private:
    QVariantHash call(const QString &method, const QVariantHash &params)
    {
        const int id = ++m_lastId;
        m_socket.send(RawWebSocket::Text,
            VeskJson::write(QVariantHash {{text("jsonrpc"), text("2.0")}, {text("id"), id},
                {text("method"), method}, {text("params"), params}}));
        for (;;) {
            const RawWebSocket::Frame frame = m_socket.receive();
            if (frame.opcode != RawWebSocket::Text) {
                ADD_FAILURE() << "the host has closed the connection";
                return {};
            }
            VeskError error;
            const QVariantHash message = VeskJson::parse(frame.payload, error).toHash();
            if (message.value(text("id")).toInt() == id)
                return message;
            if (message.value(text("method")) == text("changed"))
                m_news.append(message.value(text("params")));
        }
    }

    RawWebSocket m_socket;
    QVariantList m_news;
    int m_lastId = 0;
};

std::string written(const QVariant &value)
{
    return VeskJson::write(value).toStdString();
}

std::string reset(const QString &path)
{
    return written(QVariantHash {{text("path"), path}, {text("kind"), text("rowsReset")},
        {text("first"), -1}, {text("last"), -1}});
}

std::vector<std::string> all(const QVariantList &news)
{
    std::vector<std::string> all;
    for (const QVariant &change : news)
        all.push_back(written(change));
    return all;
}

TEST_F(FavoritesSystem, SubscribersAreNotifiedOfEachChange)
{
    const Item item = station();
    const QString furtherParameters = menu(text("TuneIn:")).value(0).path;
    ASSERT_NE(furtherParameters, text(FavoritesScreen));
    Subscriber client(product.hostPort());
    for (const QString &path : {item.browserMenu, item.playerMenu, furtherParameters,
             text(FavoritesScreen), text("TuneIn:browse/uri/Browse.ashx?c=music"),
             text("TuneIn:browser_context?guideId=s29002"), text("TuneIn:browser_context")})
        ASSERT_TRUE(client.subscribe(path));
    const auto isTold = ElementsAre(reset(text(FavoritesScreen)), reset(furtherParameters),
        reset(item.playerMenu), reset(item.browserMenu));
    constexpr int Changes = 4; // the favorites screen has two subscriptions

    for (const char *title : {AddTitle, RemoveTitle, AddTitle}) {
        EXPECT_EQ(titleIn(item.browserMenu), title);
        EXPECT_THAT(client.news(), testing::IsEmpty());
        ASSERT_TRUE(runFirstOf(item.browserMenu).contains(text("result")));
        EXPECT_THAT(all(client.news(Changes)), isTold);
    }

    product.setFault("head-fault@Preset.ashx:403");
    EXPECT_TRUE(runFirstOf(item.browserMenu).contains(text("error")));
    EXPECT_THAT(client.news(), testing::IsEmpty());
    product.clearFaults();
    EXPECT_TRUE(runFirstOf(item.browserMenu).contains(text("result")));
    EXPECT_THAT(all(client.news(Changes)), isTold);
}

} // namespace
