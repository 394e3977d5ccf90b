// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/supervision/ServiceScreens.h"

#include "api/values/CMPath.h"
#include "plugin/supervision/MemberReader.h"

namespace {

void readFavorites(ServiceScreens &screens, const QVariant &member, QString &error)
{
    MemberReader reader(member, QStringLiteral("favorites"), error);
    const QString toggle = QStringLiteral("toggle");
    const QString ids = QStringLiteral("ids");
    reader.knowsOnly({QStringLiteral("screen"), toggle, ids});
    reader.needed(QStringLiteral("screen"));
    screens.favorites = reader.pathBelowRoot(QStringLiteral("screen"));
    const bool isOne = reader.value(toggle).userType() == QMetaType::QString;
    screens.favoriteToggles = isOne ? QStringList {reader.text(toggle)} : reader.texts(toggle);
    for (const QString &entry : std::as_const(screens.favoriteToggles)) {
        const CMPath path = CMPath::fromEncoded(QStringLiteral("x:") + entry);
        if (path.base().isEmpty() || path.hasParams())
            reader.fail(toggle, QStringLiteral("holds what is no path without parameters"));
    }
    screens.favoriteIds = reader.texts(ids);
    if (screens.favoriteToggles.isEmpty() != screens.favoriteIds.isEmpty())
        reader.fail(QStringLiteral("\"toggle\" and \"ids\" belong together"));
}

void readAccount(ServiceScreens &screens, const QVariant &member, QString &error)
{
    MemberReader reader(member, QStringLiteral("account"), error);
    const QString type = QStringLiteral("type");
    reader.knowsOnly({QStringLiteral("value"), type});
    reader.needed(QStringLiteral("value"));
    screens.account = reader.pathBelowRoot(QStringLiteral("value"));
    reader.needed(type);
    screens.accountType = VeskValueType::fromString(reader.text(type));
    if (screens.accountType <= VeskValueType::hash)
        reader.fail(type, QStringLiteral("is no type of accounts"));
}

} // namespace

ServiceScreens ServiceScreens::read(const QVariant &member, QString &error)
{
    const QString search = QStringLiteral("search");
    const QString favorites = QStringLiteral("favorites");
    const QString account = QStringLiteral("account");
    const QString importValue = QStringLiteral("import");
    const QString exportValue = QStringLiteral("export");
    MemberReader reader(member, QStringLiteral("screens"), error);
    reader.knowsOnly({search, favorites, account, importValue, exportValue});
    ServiceScreens screens;
    screens.search = reader.pathBelowRoot(search);
    if (reader.has(favorites))
        readFavorites(screens, reader.value(favorites), error);
    if (reader.has(account))
        readAccount(screens, reader.value(account), error);
    screens.importValue = reader.pathBelowRoot(importValue);
    screens.exportValue = reader.pathBelowRoot(exportValue);
    return screens;
}
