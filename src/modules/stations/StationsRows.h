// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskRoles.h"
#include "modules/stations/StationsData.h"
#include "modules/stations/StationsList.h"

/// The kinds of rows that the plug-in's screens are made of. Any thread.
class StationsRows {
public:
    using Params = CMPath::Params;

    /// \a root is the path of the first screen.
    StationsRows(const CMPath &root, const QString &serviceId);

    /// A path of the plug-in's, with those of \a params that have a value.
    CMPath path(const char *base, const Params &params = {}) const;

    static VeskRoles header(const TrString &title);
    VeskRoles container(const TrString &title, const CMPath &path) const;
    /// Asks for a text, with which \a path is opened as the parameter called \a name.
    VeskRoles query(const char *title, const char *name, const CMPath &path) const;
    /// Does what StationsWorker does for the path \a action, "do/...".
    VeskRoles action(const TrString &title, const char *action, const Params &params) const;

    /// A station of the list.
    VeskRoles station(const StationsItem &item) const;
    /// A folder of the list, with as many \a stations in it.
    VeskRoles folder(const StationsItem &item, int stations) const;
    /// A station of a file.
    VeskRoles entry(const StationsEntry &entry) const;
    /// An address on trial: the player reports what becomes of it.
    VeskRoles address(const QString &address) const;
    /// A file; disabled when it cannot be read.
    VeskRoles file(const QString &name, const StationsFile &file) const;

    static TrString count(int stations);

private:
    VeskRoles audio(const StationsEntry &entry, const CMPath &path, const CMPath &menu,
        const CMPath &reportPath) const;
    VeskRoles menu(const QString &title, const CMPath &path) const;

    const QString m_prefix;
    const QString m_serviceId;
};

StationsEntry stationsEntryOf(const StationsItem &item);
