// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMPath.h"
#include "base/files/KeptFile.h"

#include <QList>
#include <QPair>
#include <QString>

/// Which of a station's streams was chosen by hand, kept in the state folder as "streams.json" from
/// one run to the next: the last 200 stations. A file that cannot be read is set aside and counts
/// as empty, one that cannot be written is logged. Main thread.
class ChosenStreams {
public:
    static constexpr int MaxStations = 200;
    /// A longer file is not read.
    static constexpr std::size_t MaxSize = 4 * 1024 * 1024;

    /// With an empty folder nothing is kept beyond this run.
    explicit ChosenStreams(const QString &folder);

    /// The path of the stream's row; empty when none was chosen.
    CMPath streamOf(const CMPath &station) const;
    /// Writes the file before it returns, when that changes anything.
    void remember(const CMPath &station, const CMPath &stream);

    QString fileName() const { return m_name; }

private:
    using Choice = QPair<CMPath, CMPath>; ///< station, stream

    void read();
    Result<void, files::Problem> write();

    const QString m_folder;
    const QString m_name;
    files::KeptFile m_file;
    QList<Choice> m_choices; ///< the latest first
};
