// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "modules/stations/StationsData.h"

/// What a file's entries are gathered in, within the limits. Folders are named by their titles from
/// the outside in, and made as they are named.
class StationsGatherer {
public:
    explicit StationsGatherer(StationsFile *file)
        : m_file(file)
    {
    }

    /// A station as the file describes it, with an \a entry.address that may be anything.
    void addStation(const QStringList &folders, StationsEntry entry);
    /// A folder, which may be there already.
    void addFolder(const QStringList &folders) { folder(folders); }
    void skip(StationsSkip reason) { ++m_file->skipped[reason]; }

private:
    /// The entries of the folder; null when it is beyond the limits, which counts as skipped.
    std::vector<StationsEntry> *folder(const QStringList &folders);
    bool takePlace();

    StationsFile *const m_file;
    int m_count = 0;
};

/// The folders as one text, and back.
QString joinStationsFolders(const QStringList &folders);
QStringList splitStationsFolders(const QString &text);
