// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/files/KeptFile.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <functional>

/// A files::KeptFile whose content is checked when it is read: one that is not good is moved aside,
/// and its last good copy is read instead. Not thread-safe.
class CheckedFile {
public:
    /// Nothing is kept when \a name is empty. \a what names the content in the log: "settings".
    /// \a isGood is a pure function.
    CheckedFile(const QString &name, std::size_t maxSize, const QString &what,
        std::function<bool(const QByteArray &)> isGood);

    struct Content {
        QByteArray bytes; ///< empty when there are none that are good
        bool isCurrent = false; ///< the file itself holds them, not a copy of it
    };
    /// Logs what goes wrong.
    Content read();
    /// A failure, in words for the log, leaves the file as it was.
    Result<void, files::Problem> write(const QByteArray &bytes);
    /// Writes a copy of the file's content, for the case that the file is damaged. Does nothing
    /// when there is one already; logs what goes wrong, and returns false then.
    bool writeLastGood();

    const QString &name() const { return m_name; }

private:
    QByteArray readLastGood() const;
    void moveAside(const QString &reason);

    const QString m_name;
    const QString m_what;
    const std::function<bool(const QByteArray &)> m_isGood;
    files::KeptFile m_file;
    QByteArray m_written; ///< what the file holds
    bool m_isCopyFailing = false;
};
