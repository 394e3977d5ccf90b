// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/library/Schema.h"

namespace {

/// Rows are JSON, see KeptRow.h. A recent row's "heard" grows with each play. Of "favorites",
/// "place" is the order; "playing" has one entry at most, which
/// is "clean" when the host ended as it should.
const char *const LibraryTables = R"(
    CREATE TABLE recents (
        path TEXT PRIMARY KEY NOT NULL,
        service TEXT NOT NULL,
        heard INTEGER NOT NULL,
        row TEXT NOT NULL);
    CREATE INDEX recents_heard ON recents (heard);
    CREATE INDEX recents_service ON recents (service, heard);
    CREATE TABLE favorites (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        path TEXT UNIQUE NOT NULL,
        place INTEGER NOT NULL,
        row TEXT NOT NULL);
    CREATE TABLE presets (
        number INTEGER PRIMARY KEY NOT NULL,
        path TEXT NOT NULL,
        row TEXT NOT NULL);
    CREATE TABLE playing (
        id INTEGER PRIMARY KEY CHECK (id = 1),
        row TEXT NOT NULL,
        clean INTEGER NOT NULL);
)";

/// Times are seconds since 1970; "row" is as in the tables above, or empty. "night" has numbers by
/// name.
const char *const AlarmTables = R"(
    CREATE TABLE alarms (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        time TEXT NOT NULL,
        days TEXT NOT NULL,
        enabled INTEGER NOT NULL,
        volume INTEGER,
        fade INTEGER NOT NULL,
        row BLOB NOT NULL,
        accounted INTEGER NOT NULL,
        rung INTEGER NOT NULL,
        skipped INTEGER NOT NULL,
        snoozed INTEGER NOT NULL);
    CREATE TABLE missed_alarms (
        alarm INTEGER NOT NULL,
        at INTEGER NOT NULL,
        PRIMARY KEY (alarm, at));
    CREATE TABLE night (
        name TEXT PRIMARY KEY NOT NULL,
        value INTEGER NOT NULL);
)";

/// A later place has a greater "kept"; "place" is in milliseconds.
const char *const PlaceTables = R"(
    CREATE TABLE places (
        path TEXT PRIMARY KEY NOT NULL,
        place INTEGER NOT NULL,
        kept INTEGER NOT NULL);
    CREATE INDEX places_kept ON places (kept);
)";

} // namespace

const std::vector<const char *> &librarySchema()
{
    static const std::vector<const char *> steps {
        LibraryTables,
        AlarmTables,
        PlaceTables,
    };
    return steps;
}
