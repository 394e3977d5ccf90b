// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "base/Result.h"
#include "base/files/KeptFile.h"

#include <QString>

#include <functional>
#include <vector>

/// The file "version" in the state folder: the number of the form that all files there have, in
/// decimal digits and a line break; no file stands for 0. docs/host.md has the rule. Not
/// thread-safe.
class StateVersion {
public:
    /// Brings the folder from one version to the next. It may be repeated after any interruption,
    /// and leaves all files of the version before as they are: what gets another form gets another
    /// name. Empty when only the number changes.
    using Step = std::function<Result<void, files::Problem>(const QString &folder)>;
    /// As many as there are versions before the present one; the first one leads from 0 to 1.
    using Steps = std::vector<Step>;

    /// With an empty \a folder there is nothing to check and nothing is written.
    explicit StateVersion(const QString &folder, Steps steps = released());

    /// Fails, in words for the user, when a later version of the program has written the folder, or
    /// when there is no telling. Only reads.
    Result<void, QString> check() const;
    /// As check(), and then all that leads to the present version; a new folder has nothing to
    /// bring there. Each step's version is written after it. Fails, in words for the user, when one
    /// of the two cannot be done; the folder then still is what it was for the program that wrote
    /// it. That the present version cannot be written where no step was needed is no failure, and
    /// is tried again the next time. \a held: whether the folder's lock is held, without which
    /// nothing is written.
    Result<void, QString> bringUpToDate(const Result<void, files::Problem> &held);

    /// Those of this program. One that was released never changes: add another one.
    static const Steps &released();

private:
    Result<int, QString> read() const;
    Result<int, QString> checked() const;
    /// Nothing was ever kept there.
    bool isNew() const;
    bool isWritten(int version) const;
    Result<void, files::Problem> write(int version);
    int newest() const { return static_cast<int>(m_steps.size()); }

    const QString m_folder;
    const Steps m_steps;
    files::KeptFile m_file;
};
