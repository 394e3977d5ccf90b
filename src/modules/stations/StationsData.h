// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QString>

#include <map>
#include <vector>

/// \file
/// Stations as files and the list hold them. Values and pure functions, any thread.

/// A station, or a folder, which has no address and whose entries are stations and folders.
struct StationsEntry {
    QString title;
    QString address; ///< http or https; empty for a folder
    QString picture; ///< http or https, or empty
    QString description;
    std::vector<StationsEntry> entries {};

    bool isFolder() const { return address.isEmpty(); }
};

bool operator==(const StationsEntry &a, const StationsEntry &b);

/// What is kept of a file or a list at most.
struct StationsLimits {
    static constexpr int Bytes = 1024 * 1024; ///< of a file
    static constexpr int Entries = 5000; ///< stations and folders together
    static constexpr int Depth = 8; ///< of folders in each other
    static constexpr int Title = 200;
    static constexpr int Address = 2000;
    static constexpr int Description = 500;
};

/// Why an entry of a file was left out.
enum class StationsSkip {
    NoWebAddress, ///< another scheme, a file's name, or nothing
    NoStation, ///< a link to something else
    TooLong, ///< the address
    TooDeep,
    TooMany,
};

/// What is in a file.
struct StationsFile {
    TrString error; ///< why it cannot be used; empty for a list
    QString title; ///< what the file calls itself, often nothing
    std::vector<StationsEntry> entries {};
    std::map<StationsSkip, int> skipped {};

    int skippedCount() const;
};

/// \a source as a text of this plug-in; for the places in it \a arguments.
TrString stationsTr(const char *source, const QVector<TrArg> &arguments = {});
/// The same with a plural for \a count.
TrString stationsCountTr(const char *source, int count, const QVector<TrArg> &arguments = {});

/// \a text on one line, without what XML cannot hold, cut at \a longest.
QString stationsText(const QString &text, int longest);
/// \a text as an address; empty when it is none, is neither http nor https or is too long.
QString stationsAddress(const QString &text);
/// What a station without a name is called: the address' server and path.
QString stationsTitle(const QString &address);

/// How many stations, without the folders, there are in \a entries and the folders below.
int stationsCount(const std::vector<StationsEntry> &entries);
/// The folder called \a title in \a entries; null when there is none.
StationsEntry *stationsFolderIn(std::vector<StationsEntry> &entries, const QString &title);
