// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskRoles.h"

#include "api/core/Language.h"
#include "api/values/VeskRowsRoles.h"

#include <gtest/gtest.h>

TEST(VeskRolesType, HasFixedCodes)
{
    EXPECT_EQ(VeskRolesType::Container(), 1);
    EXPECT_EQ(VeskRolesType::Header(), 2);
    EXPECT_EQ(VeskRolesType::Audio(), 3);
    EXPECT_EQ(VeskRolesType::Value(), 4);
    EXPECT_EQ(VeskRolesType::Query(), 5);
    EXPECT_EQ(VeskRolesType::Activate(), 6);
    EXPECT_EQ(VeskRolesAudioType::None(), 0);
    EXPECT_EQ(VeskRolesAudioType::Audio(), 1);
    EXPECT_EQ(VeskRolesAudioType::AudioBroadcast(), 2);
    EXPECT_EQ(int(VeskRolesContainerType::ContextMenu), 100);
    EXPECT_EQ(int(VeskRolesContainerType::SearchList), 101);
}

TEST(VeskRoles, NamesEveryRoleOnce)
{
    const QStringList expected
        = {QStringLiteral("title"), QStringLiteral("description"), QStringLiteral("icon"),
            QStringLiteral("type"), QStringLiteral("audioType"), QStringLiteral("path"),
            QStringLiteral("context"), QStringLiteral("mediaData"), QStringLiteral("id"),
            QStringLiteral("preferred"), QStringLiteral("value"), QStringLiteral("prePlay"),
            QStringLiteral("activate"), QStringLiteral("cancel"), QStringLiteral("search"),
            QStringLiteral("activity"), QStringLiteral("containerType"), QStringLiteral("playable"),
            QStringLiteral("disabled"), QStringLiteral("query"), QStringLiteral("queryPath")};
    EXPECT_EQ(VeskRoles::all(), expected);
    EXPECT_EQ(CMAllRoles(), expected);
}

TEST(VeskRoles, KeepsItsEntriesUnderTheirRolesNames)
{
    const CMPath path(QStringLiteral("TuneIn"), QStringLiteral("browse"));
    VeskMediaData media;
    media.setMetaData(VeskMetaData());
    VeskRoles menu;
    menu.setPath(path);

    VeskRoles roles;
    roles.setTitle(TrString("Test", "Title"));
    roles.setDescription(Language::ntr(QStringLiteral("Description")));
    roles.setIcon(QStringLiteral("icon:a"));
    roles.setType(VeskRolesType::Audio());
    roles.setAudioType(VeskRolesAudioType::AudioBroadcast());
    roles.setPath(path);
    roles.setContext(menu);
    roles.setMediaData(media);
    roles.setId(QStringLiteral("s1"));
    roles.setPreferred(true);
    roles.setContainerType(VeskRolesContainerType::SearchList);
    roles.setQuery(QStringLiteral("query"));
    roles.setQueryPath(path);

    EXPECT_EQ(roles.toHash(),
        QVariantHash({{QStringLiteral("title"), TrString("Test", "Title")},
            {QStringLiteral("description"), Language::ntr(QStringLiteral("Description"))},
            {QStringLiteral("icon"), QStringLiteral("icon:a")}, {QStringLiteral("type"), 3},
            {QStringLiteral("audioType"), 2},
            {QStringLiteral("path"), QStringLiteral("TuneIn:browse")},
            {QStringLiteral("context"),
                QVariantHash {{QStringLiteral("path"), QStringLiteral("TuneIn:browse")}}},
            {QStringLiteral("mediaData"),
                QVariantHash {{QStringLiteral("metaData"), QVariantHash()}}},
            {QStringLiteral("id"), QStringLiteral("s1")}, {QStringLiteral("preferred"), true},
            {QStringLiteral("containerType"), 101},
            {QStringLiteral("query"), QStringLiteral("query")},
            {QStringLiteral("queryPath"), QStringLiteral("TuneIn:browse")}}));

    EXPECT_EQ(roles.title(), TrString("Test", "Title"));
    EXPECT_EQ(roles.description().toString(), QStringLiteral("Description"));
    EXPECT_EQ(roles.icon(), QStringLiteral("icon:a"));
    EXPECT_EQ(roles.type(), 3);
    EXPECT_EQ(roles.audioType(), 2);
    EXPECT_EQ(roles.path(), path);
    EXPECT_EQ(roles.context().path(), path);
    EXPECT_EQ(roles.mediaData(), media);
    EXPECT_EQ(roles.id(), QStringLiteral("s1"));
    EXPECT_TRUE(roles.preferred());
    EXPECT_EQ(roles.containerType(), 101);
    EXPECT_EQ(roles.query(), QStringLiteral("query"));
    EXPECT_EQ(roles.queryPath(), path);
}

TEST(VeskRoles, LeadsToWhatServicesHave)
{
    const CMPath path = CMPath::fromEncoded(QStringLiteral("Radio:list?c=kept"));
    VeskRoles roles;
    roles.setSearch(path);
    roles.setFavorites(
        path, {CMPath::fromEncoded(QStringLiteral("Radio:menu/keep"))}, {QStringLiteral("id")});
    roles.setAccount(path, VeskValueType::tuneInAccount);
    roles.setImport(path);
    roles.setExport(path);

    const QVariantHash leading {{QStringLiteral("path"), QStringLiteral("Radio:list?c=kept")}};
    QVariantHash favorites = leading;
    favorites.insert(QStringLiteral("toggle"), QStringList {QStringLiteral("Radio:menu/keep")});
    favorites.insert(QStringLiteral("ids"), QStringList {QStringLiteral("id")});
    QVariantHash account = leading;
    account.insert(QStringLiteral("type"), 115);
    account.insert(QStringLiteral("key"), QStringLiteral("tuneInAccount"));
    EXPECT_EQ(roles.value(QStringLiteral("search")).toHash(), leading);
    EXPECT_EQ(roles.value(QStringLiteral("favorites")).toHash(), favorites);
    EXPECT_EQ(roles.value(QStringLiteral("account")).toHash(), account);
    EXPECT_EQ(roles.value(QStringLiteral("import")).toHash(), leading);
    EXPECT_EQ(roles.value(QStringLiteral("export")).toHash(), leading);

    EXPECT_EQ(roles.search().path(), path);
    EXPECT_EQ(roles.favorites().path(), path);
    EXPECT_EQ(roles.account().path(), path);
    EXPECT_EQ(roles.account().type(), 115);
    EXPECT_EQ(roles.importValue().path(), path);
    EXPECT_EQ(roles.exportValue().path(), path);
}

TEST(VeskRoles, ReadsEmptyWhenEmpty)
{
    const VeskRoles roles;
    EXPECT_TRUE(roles.title().isEmpty());
    EXPECT_EQ(roles.type(), 0);
    EXPECT_TRUE(roles.path().isEmpty());
    EXPECT_TRUE(roles.context().isEmpty());
    EXPECT_TRUE(roles.mediaData().isEmpty());
    EXPECT_FALSE(roles.preferred());
}

TEST(VeskRoles, ReadsWhatCameAsJson)
{
    const VeskRoles roles(VeskHash(QVariantHash {{QStringLiteral("title"), QStringLiteral("Folk")},
        {QStringLiteral("type"), qlonglong(3)}, {QStringLiteral("path"), QStringLiteral("no path")},
        {QStringLiteral("context"), QVariant()}}));
    EXPECT_EQ(roles.title().toString(), QStringLiteral("Folk"));
    EXPECT_EQ(roles.type(), 3);
    EXPECT_TRUE(roles.path().isEmpty());
    EXPECT_TRUE(roles.context().isEmpty());
}

TEST(VeskRowsRoles, KeepsRowsCountAndRoles)
{
    VeskRowsRoles answer;
    EXPECT_EQ(answer.rowsCount(), 0);
    EXPECT_TRUE(answer.rows().isEmpty());
    EXPECT_TRUE(answer.roles().isEmpty());

    VeskRoles screen;
    screen.setId(QStringLiteral("x"));
    const QVariantList rows = {QVariant(QVariantList {1, QVariant()})};
    answer.setRowsCount(30);
    answer.setRows(rows);
    answer.setRoles(screen);
    EXPECT_EQ(answer.toHash(),
        QVariantHash({{QStringLiteral("rowsCount"), 30}, {QStringLiteral("rows"), rows},
            {QStringLiteral("roles"), screen}}));
    EXPECT_EQ(answer.rowsCount(), 30);
    EXPECT_EQ(answer.rows(), rows);
    EXPECT_EQ(answer.roles(), screen);
}

TEST(VeskRowsRoles, HasNoRowsWhereThereIsNoList)
{
    const VeskRowsRoles answer(QVariantHash {{QStringLiteral("rows"), QStringLiteral("no list")}});
    EXPECT_TRUE(answer.rows().isEmpty());
}
