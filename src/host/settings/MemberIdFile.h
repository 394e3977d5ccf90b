// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/files/KeptFile.h"

#include <QString>

/// The file "member-id" in the state folder. Services know the device by this id, so the file is
/// written once and never again: no change of a setting can damage it. Not thread-safe.
class MemberIdFile {
public:
    /// With an empty \a folder nothing is kept. To read and write, hold the folder's lock.
    explicit MemberIdFile(const QString &folder);

    /// Empty when there is none. One that cannot be understood is moved aside.
    QString read();
    Result<void, files::Problem> write(const QString &id);

    static bool isMemberId(const QString &text);
    /// One that no other device has.
    static QString make();

private:
    const bool m_isUsed;
    files::KeptFile m_file;
};
