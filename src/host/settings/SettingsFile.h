// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "host/store/CheckedFile.h"

#include <QByteArray>
#include <QString>
#include <QVariantHash>

/// What is kept from one run of the host to the next.
struct KeptSettings {
    /// By the text form of their paths; plain values. Those of paths that this version does not
    /// know are carried along.
    QVariantHash values;
    /// Tells this device from all others; empty until there is one.
    QString memberId;
};

inline bool operator==(const KeptSettings &a, const KeptSettings &b)
{
    return a.values == b.values && a.memberId == b.memberId;
}

/// The file "settings.json" in the state folder, and what files::KeptFile keeps beside it. One that
/// cannot be understood is moved aside, and what it held last is read instead. Not thread-safe.
class SettingsFile {
public:
    /// A longer file is taken for damaged.
    static constexpr qint64 MaxSize = 1024 * 1024;

    /// With an empty \a folder nothing is kept. To read and write, hold the folder's lock.
    explicit SettingsFile(const QString &folder);

    struct Content {
        KeptSettings settings; ///< empty when there are none that can be understood
        bool isCurrent = false; ///< the file itself holds them, not a copy of it
    };
    Content read();
    /// A failure, in words for the log, leaves the file as it was.
    Result<void, files::Problem> write(const KeptSettings &settings);
    /// Writes a copy of the file's content, for the case that the file is damaged. Does nothing
    /// when there is one already; logs what goes wrong.
    void writeLastGood() { m_file.writeLastGood(); }

    const QString &fileName() const { return m_file.name(); }

    /// $XDG_STATE_HOME/vesk, else .local/state/vesk in the home folder, else, for root,
    /// /var/lib/vesk. Empty when there is none of them.
    static QString defaultFolder();

private:
    CheckedFile m_file;
};
