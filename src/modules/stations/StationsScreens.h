// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "modules/stations/StationsFolder.h"
#include "modules/stations/StationsList.h"
#include "modules/stations/StationsNodes.h"
#include "modules/stations/StationsRows.h"

/// What the player said of an address that is not in the list.
struct StationsTrial {
    QString address; ///< that was tried last
    bool isHeard = false;
    QString error; ///< why it does not play
};

/// The plug-in's screens: which rows there are, and where they lead. The worker's thread.
///
/// What rows do is to be found at "do/...", see StationsWorker.
class StationsScreens {
public:
    using Params = CMUINode::Params;

    StationsScreens(StationsList *list, StationsFolder *folder, const StationsRows &rows);

    /// The listener's list with the folder's files.
    StationsScreen root() const;
    /// A folder of the list: "id".
    StationsScreen folder(const Params &params) const;
    /// A file of the folder, or a folder in it: "name", and "folder" with the titles.
    StationsScreen file(const Params &params) const;
    /// All stations that have each of the words of "text".
    StationsScreen results(const Params &params) const;
    /// An address that the listener has entered: "address", and the "folder" to keep it in.
    StationsScreen add(const Params &params) const;
    /// The menu of an entry ("id"), of the list itself (without), or of a file's station
    /// ("address", with what else is known of it).
    StationsScreen menu(const Params &params) const;
    /// What a listener has entered, to be confirmed: a new name ("id", "title"), a new folder
    /// ("folder", "title").
    StationsScreen rename(const Params &params) const;
    StationsScreen newFolder(const Params &params) const;
    /// Where an entry can be moved to; whether a folder goes with all that is in it: "id".
    StationsScreen move(const Params &params) const;
    StationsScreen remove(const Params &params) const;

    /// The row of a station of the list, "station?id=...", or of any other, "address?address=...".
    VeskRoles station(const CMPath &path) const;

    StationsTrial &trial() { return m_trial; }
    /// Where \a text that was entered leads: an address without its scheme is one, too.
    static QString entered(const QString &text);

private:
    VeskRoles itemRow(const QString &id) const;
    void appendListRows(const QString &folder, QList<VeskRoles> &rows) const;
    void appendItemRows(const StationsItem &item, QList<VeskRoles> &rows) const;
    bool isMovable(const QString &id) const;
    StationsScreen entryMenu(const Params &params) const;

    StationsList *const m_list;
    StationsFolder *const m_folder;
    const StationsRows m_rows;
    StationsTrial m_trial;
};

/// Why most of what was left out of \a file was left out, with how much that is; empty for
/// nothing.
TrString stationsSkipped(const StationsFile &file);
