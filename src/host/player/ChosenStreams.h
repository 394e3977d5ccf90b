// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "base/files/KeptFile.h"

#include <QList>
#include <QPair>
#include <QString>

/// The streams that users picked for stations, for the 200 stations used last, stored as
/// "streams.json" in the state folder. An unreadable file is renamed and treated as empty; a
/// failure to write is logged. Main thread.
class ChosenStreams {
public:
    static constexpr int MaxStations = 200;
    /// A larger file counts as unreadable.
    static constexpr std::size_t MaxSize = 4 * 1024 * 1024;

    /// With an empty \a folder nothing is stored beyond this run.
    explicit ChosenStreams(const QString &folder);

    /// The path of the picked stream's row; empty if there is none.
    CMPath streamOf(const CMPath &station) const;
    /// Writes the file before it returns, if anything changed.
    void remember(const CMPath &station, const CMPath &stream);

    QString fileName() const { return m_name; }

private:
    using Choice = QPair<CMPath, CMPath>; ///< station, stream

    void read();
    Result<void, files::Problem> write();

    const QString m_folder;
    const QString m_name;
    files::KeptFile m_file;
    QList<Choice> m_choices; ///< most recent first
};
