// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/system/FavoritesFixture.h"

#include "api/values/CMPath.h"
#include "api/web/VeskJson.h"
#include "tests/support/Text.h"

#include <QFile>

namespace {

std::vector<std::string> plain(const QStringList &texts)
{
    std::vector<std::string> all;
    for (const QString &each : texts)
        all.push_back(each.toStdString());
    return all;
}

} // namespace

Complaint Complaint::of(const QVariantHash &answer)
{
    const QVariantHash error = answer.value(text("error")).toHash();
    const QVariantHash data = error.value(text("data")).toHash();
    return {error.value(text("message")).toString(), data.value(text("name")).toString(),
        data.value(text("title")).toString()};
}

FavoritesFixture::FavoritesFixture(QStringList hostArguments)
    : product(hostArguments.replaceInStrings(text("%1"), folder.path()))
{
}

void FavoritesFixture::SetUp()
{
    ASSERT_TRUE(product.isUp());
    serial = product.serial();
    ASSERT_EQ(serial.size(), 32);
    device = text("&partnerId=test&serial=") + serial;
}

QList<Item> FavoritesFixture::items(const QString &screen) const
{
    QList<Item> items;
    const QVariantList rows
        = product.rows(screen, {text("title"), text("context"), text("mediaData")});
    for (const QVariant &each : rows) {
        const QVariantList row = each.toList();
        const QVariantHash metaData = row.value(2).toHash().value(text("metaData")).toHash();
        Item item;
        item.title = row.value(0).toString();
        item.browserMenu = row.value(1).toHash().value(text("path")).toString();
        item.playerMenu = metaData.value(text("contentPlayContextPath")).toString();
        const QString menu = item.browserMenu.isEmpty() ? item.playerMenu : item.browserMenu;
        item.guideId = CMPath::fromEncoded(menu).param(text("guideId"));
        items.append(item);
    }
    return items;
}

QList<Item> FavoritesFixture::found(const char *query) const
{
    return items(text("TuneIn:browse/uri/Search.ashx?query=") + text(query));
}

Item FavoritesFixture::station() const
{
    return found("trial%2001").value(0);
}

Item FavoritesFixture::show() const
{
    const QList<Item> all = found("morning");
    for (const Item &item : all) {
        if (item.guideId.startsWith(QLatin1Char('p')))
            return item;
    }
    return {};
}

Item FavoritesFixture::topic() const
{
    return items(text("TuneIn:browse/uri/Browse.ashx?c=topics&id=p3003")).value(0);
}

QList<Entry> FavoritesFixture::menu(const QString &path) const
{
    QList<Entry> entries;
    const QVariantList rows = product.rows(path, {text("title"), text("path")});
    for (const QVariant &row : rows)
        entries.append({row.toList().value(0).toString(), row.toList().value(1).toString()});
    return entries;
}

std::string FavoritesFixture::titleIn(const QString &menuPath) const
{
    return menu(menuPath).value(0).title.toStdString();
}

QVariantHash FavoritesFixture::run(const QString &entryPath) const
{
    return product.rpc(text("setData"),
        {{text("path"), entryPath}, {text("role"), text("activate")}, {text("value"), QVariant()}});
}

QVariantHash FavoritesFixture::runFirstOf(const QString &menuPath) const
{
    return run(menu(menuPath).value(0).path);
}

std::vector<std::string> FavoritesFixture::favorites() const
{
    QStringList titles;
    const QVariantList rows = product.rows(text(FavoritesScreen), {text("title")});
    for (const QVariant &row : rows)
        titles.append(row.toList().value(0).toString());
    return plain(titles);
}

std::vector<std::string> FavoritesFixture::requests()
{
    return plain(product.newRequests());
}

std::string FavoritesFixture::describeRequest(const char *id) const
{
    return (text("GET /Describe.ashx?id=") + text(id) + text("&render=json") + device)
        .toStdString();
}

std::string FavoritesFixture::presetRequest(const char *command, const char *id) const
{
    return (text("GET /Preset.ashx?c=") + text(command) + text("&render=json") + device
        + text("&id=") + text(id))
        .toStdString();
}

void FavoritesFixture::addAndRemove(const QString &menuPath, const char *id, const char *listedAs)
{
    using testing::ElementsAre;
    requests();
    const Entry entry = menu(menuPath).value(0);
    EXPECT_EQ(entry.title, text(AddTitle));
    EXPECT_THAT(requests(), ElementsAre(describeRequest(id)));
    const QVariantHash added = run(entry.path);
    EXPECT_TRUE(added.contains(text("result"))) << VeskJson::write(added).toStdString();
    EXPECT_TRUE(added.value(text("result")).toHash().value(text("value")).isNull());
    EXPECT_THAT(requests(), ElementsAre(presetRequest("add", id)));
    EXPECT_THAT(favorites(), ElementsAre(testing::HasSubstr(listedAs)));

    requests();
    EXPECT_EQ(titleIn(menuPath), RemoveTitle);
    EXPECT_THAT(requests(), ElementsAre(describeRequest(id)));
    EXPECT_TRUE(run(entry.path).contains(text("result")));
    EXPECT_THAT(requests(), ElementsAre(presetRequest("remove", id)));
    EXPECT_THAT(favorites(), ElementsAre(NoFavorites));
    EXPECT_EQ(titleIn(menuPath), AddTitle);
}

void FavoritesFixture::answerOnce(const char *page, const QByteArray &body)
{
    QFile file(folder.filePath(text("answer.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\"head\":{\"status\":\"200\"},\"body\":[" + body + "]}");
    file.close();
    product.setFault("body@" + QByteArray(page) + ':' + file.fileName().toUtf8() + "*1");
}
