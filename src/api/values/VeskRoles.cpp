// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/values/VeskRoles.h"

VESK_KEY(VeskRoles::Title, "title")
VESK_KEY(VeskRoles::Description, "description")
VESK_KEY(VeskRoles::Icon, "icon")
VESK_KEY(VeskRoles::Type, "type")
VESK_KEY(VeskRoles::AudioType, "audioType")
VESK_KEY(VeskRoles::Path, "path")
VESK_KEY(VeskRoles::Context, "context")
VESK_KEY(VeskRoles::MediaData, "mediaData")
VESK_KEY(VeskRoles::Id, "id")
VESK_KEY(VeskRoles::Preferred, "preferred")
VESK_KEY(VeskRoles::Value, "value")
VESK_KEY(VeskRoles::PrePlay, "prePlay")
VESK_KEY(VeskRoles::Activate, "activate")
VESK_KEY(VeskRoles::Cancel, "cancel")
VESK_KEY(VeskRoles::Search, "search")
VESK_KEY(VeskRoles::Activity, "activity")
VESK_KEY(VeskRoles::ContainerType, "containerType")
VESK_KEY(VeskRoles::Playable, "playable")
VESK_KEY(VeskRoles::Disabled, "disabled")
VESK_KEY(VeskRoles::Query, "query")
VESK_KEY(VeskRoles::QueryPath, "queryPath")
VESK_KEY(VeskRoles::Favorites, "favorites")
VESK_KEY(VeskRoles::Account, "account")
VESK_KEY(VeskRoles::Import, "import")
VESK_KEY(VeskRoles::Export, "export")

namespace {

/// The roles of an entry that leads to \a path.
VeskHash leadingTo(const CMPath &path)
{
    VeskRoles roles;
    roles.setPath(path);
    return roles;
}

} // namespace

const QStringList &VeskRoles::all()
{
    static const QStringList names = {Title(), Description(), Icon(), Type(), AudioType(), Path(),
        Context(), MediaData(), Id(), Preferred(), Value(), PrePlay(), Activate(), Cancel(),
        Search(), Activity(), ContainerType(), Playable(), Disabled(), Query(), QueryPath()};
    return names;
}

TrString VeskRoles::title() const
{
    return TrString::fromVariant(value(Title()));
}

TrString VeskRoles::description() const
{
    return TrString::fromVariant(value(Description()));
}

QString VeskRoles::icon() const
{
    return text(Icon());
}

int VeskRoles::type() const
{
    return number(Type());
}

int VeskRoles::audioType() const
{
    return number(AudioType());
}

CMPath VeskRoles::path() const
{
    return CMPath::fromVariant(value(Path()));
}

VeskRoles VeskRoles::context() const
{
    return hash(Context());
}

VeskMediaData VeskRoles::mediaData() const
{
    return hash(MediaData());
}

QString VeskRoles::id() const
{
    return text(Id());
}

bool VeskRoles::preferred() const
{
    return flag(Preferred());
}

int VeskRoles::containerType() const
{
    return number(ContainerType());
}

QString VeskRoles::query() const
{
    return text(Query());
}

CMPath VeskRoles::queryPath() const
{
    return CMPath::fromVariant(value(QueryPath()));
}

void VeskRoles::setTitle(const TrString &title)
{
    insert(Title(), title);
}

void VeskRoles::setDescription(const TrString &description)
{
    insert(Description(), description);
}

void VeskRoles::setIcon(const QString &icon)
{
    insert(Icon(), icon);
}

void VeskRoles::setType(int type)
{
    insert(Type(), type);
}

void VeskRoles::setAudioType(int type)
{
    insert(AudioType(), type);
}

void VeskRoles::setPath(const CMPath &path)
{
    insert(Path(), path.toEncoded());
}

void VeskRoles::setContext(const VeskHash &context)
{
    insert(Context(), context);
}

void VeskRoles::setMediaData(const VeskMediaData &mediaData)
{
    insert(MediaData(), mediaData);
}

void VeskRoles::setId(const QString &id)
{
    insert(Id(), id);
}

void VeskRoles::setPreferred(bool preferred)
{
    insert(Preferred(), preferred);
}

void VeskRoles::setContainerType(VeskRolesContainerType type)
{
    insert(ContainerType(), int(type));
}

void VeskRoles::setQuery(const QString &key)
{
    insert(Query(), key);
}

void VeskRoles::setQueryPath(const CMPath &path)
{
    insert(QueryPath(), path.toEncoded());
}

VeskRoles VeskRoles::search() const
{
    return hash(Search());
}

VeskRoles VeskRoles::favorites() const
{
    return hash(Favorites());
}

VeskRoles VeskRoles::account() const
{
    return hash(Account());
}

VeskRoles VeskRoles::importValue() const
{
    return hash(Import());
}

VeskRoles VeskRoles::exportValue() const
{
    return hash(Export());
}

void VeskRoles::setSearch(const CMPath &searches)
{
    insert(Search(), leadingTo(searches));
}

void VeskRoles::setFavorites(
    const CMPath &screen, const QList<CMPath> &toggles, const QStringList &ids)
{
    QStringList entries;
    for (const CMPath &toggle : toggles)
        entries.append(toggle.toEncoded());
    VeskHash favorites = leadingTo(screen);
    favorites.insert(QStringLiteral("toggle"), entries);
    favorites.insert(QStringLiteral("ids"), ids);
    insert(Favorites(), favorites);
}

void VeskRoles::setAccount(const CMPath &value, VeskValueType::Enum type)
{
    VeskHash account = leadingTo(value);
    account.insert(Type(), int(type));
    account.insert(QStringLiteral("key"), VeskValueType::toString(type));
    insert(Account(), account);
}

void VeskRoles::setImport(const CMPath &value)
{
    insert(Import(), leadingTo(value));
}

void VeskRoles::setExport(const CMPath &value)
{
    insert(Export(), leadingTo(value));
}

const QStringList &CMAllRoles()
{
    return VeskRoles::all();
}
