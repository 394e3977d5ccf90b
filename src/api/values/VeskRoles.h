// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"
#include "api/values/CMPath.h"
#include "api/values/VeskHash.h"
#include "api/values/VeskMediaData.h"
#include "api/values/VeskValue.h"

#include <QStringList>

/// The type of a row. The codes appear in values, so they are fixed.
struct VeskRolesType {
    enum Enum {
        none = 0,
        container = 1,
        header = 2,
        audio = 3,
        value = 4,
        query = 5,
        activate = 6
    };
    static int Container() { return container; }
    static int Header() { return header; }
    static int Audio() { return audio; }
    static int Value() { return value; }
    static int Query() { return query; }
    static int Activate() { return activate; }
};

/// The kind of audio that a row offers.
struct VeskRolesAudioType {
    enum Enum { none = 0, audio = 1, audioBroadcast = 2 };
    static int None() { return none; }
    static int Audio() { return audio; }
    static int AudioBroadcast() { return audioBroadcast; }
};

/// The purpose of a container.
enum class VeskRolesContainerType { List = 0, ContextMenu = 100, SearchList = 101 };

/// The roles of one row or screen: what is displayed and which actions it offers, by role name. The
/// static functions return the names; the accessors of the same names in lower camel case read and
/// write the values. Paths are stored in their text form.
class VESK_API VeskRoles : public VeskHash {
public:
    using VeskHash::VeskHash;
    VeskRoles() = default;
    VeskRoles(const VeskHash &hash)
        : VeskHash(hash)
    {
    }

    static const QString &Title();
    static const QString &Description();
    static const QString &Icon();
    static const QString &Type();
    static const QString &AudioType();
    static const QString &Path();
    static const QString &Context();
    static const QString &MediaData();
    static const QString &Id();
    static const QString &Preferred();
    static const QString &Value();
    static const QString &PrePlay();
    static const QString &Activate();
    static const QString &Cancel();
    static const QString &Search();
    static const QString &Activity();
    static const QString &ContainerType();
    static const QString &Playable();
    static const QString &Disabled();
    static const QString &Query();
    static const QString &QueryPath();
    /// Every role name above, in that order.
    static const QStringList &all();

    // Of services, that is of the rows of the host's list of services, which answers them from what
    // the plug-in declares. Each is a hash, or null for a service that has no such thing; "path" is
    // in text form.
    /// "path": the screen with the favorites. "toggle": the paths, without parameters, of the
    /// entries of menus that add an item to the favorites or remove it. "ids": the parameters of
    /// the path of a menu that tell the item for which it is.
    static const QString &Favorites();
    /// "path": the value with the account; "type" and "key": the code and the name of its type.
    static const QString &Account();
    /// "path": the value that takes parts of files with a list of stations.
    static const QString &Import();
    /// "path": the value that gives such a file; its parameter "format" says which.
    static const QString &Export();

    TrString title() const;
    TrString description() const;
    QString icon() const;
    int type() const;
    int audioType() const;
    CMPath path() const;
    VeskRoles context() const;
    VeskMediaData mediaData() const;
    QString id() const;
    bool preferred() const;
    int containerType() const;
    QString query() const;
    CMPath queryPath() const;
    /// Its path() leads to the screen whose query rows are the searches.
    VeskRoles search() const;
    VeskRoles favorites() const;
    VeskRoles account() const;
    VeskRoles importValue() const;
    VeskRoles exportValue() const;

    void setTitle(const TrString &title);
    void setDescription(const TrString &description);
    void setIcon(const QString &icon);
    void setType(int type);
    void setAudioType(int type);
    void setPath(const CMPath &path);
    void setContext(const VeskHash &context);
    void setMediaData(const VeskMediaData &mediaData);
    void setId(const QString &id);
    void setPreferred(bool preferred);
    void setContainerType(VeskRolesContainerType type);
    void setQuery(const QString &key);
    void setQueryPath(const CMPath &path);
    void setSearch(const CMPath &searches);
    void setFavorites(
        const CMPath &screen, const QList<CMPath> &toggles = {}, const QStringList &ids = {});
    void setAccount(const CMPath &value, VeskValueType::Enum type);
    void setImport(const CMPath &value);
    void setExport(const CMPath &value);
};

/// All role names: pass it where a list of role names is expected to mean every role.
VESK_API const QStringList &CMAllRoles();
