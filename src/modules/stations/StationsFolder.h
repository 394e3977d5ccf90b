// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "modules/stations/StationsData.h"

#include <QStringList>

#include <map>
#include <memory>

#include <sys/stat.h>

/// The files with stations that the listener puts into the plug-in's folder. Only read, and only
/// when they are asked for. One thread.
class StationsFolder {
public:
    /// Of these files at most, and no more bytes of all together, are read.
    static constexpr int MaxFiles = 50;
    static constexpr int MaxBytes = 4 * StationsLimits::Bytes;
    /// Names that are looked at in the folder.
    static constexpr int MaxNames = 1000;

    /// \a path of the folder; empty when there is none.
    explicit StationsFolder(QString path)
        : m_path(std::move(path))
    {
    }

    /// Reads what has changed since the last time. The files' names in the order of the alphabet;
    /// one that cannot be read has an error.
    void refresh();
    const QStringList &names() const { return m_names; }
    /// How many files there are beyond MaxFiles.
    int omitted() const { return m_omitted; }
    /// What a file held when it was last read; null when there is none of this name.
    const StationsFile *find(const QString &name) const;

private:
    /// Tells whether a file is the one that was read.
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        timespec modified {};
        timespec changed {};
    };
    struct Read {
        Stamp stamp;
        std::shared_ptr<const StationsFile> file;
    };

    static bool isSame(const Stamp &a, const Stamp &b);
    static Stamp stampOf(const struct stat &status);
    void list();
    Read read(const QString &name, qint64 bytesLeft) const;

    const QString m_path;
    QStringList m_names;
    int m_omitted = 0;
    std::map<QString, Read> m_files;
};
