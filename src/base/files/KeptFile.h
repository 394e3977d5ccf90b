// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A small file that outlives the program: settings, an id, accounts. A write replaces it as a
/// whole or leaves it as it was, and is on the disk once it has succeeded. Beside the file lie
///
/// - FILE.last-good: a copy of its last good content, for when the file is damaged,
/// - FILE.damaged, FILE.damaged.2 and so on: what could not be read, moved out of the way,
/// - FILE.new: an unfinished write, which is never read.
///
/// Only regular files are opened in any of these places. A link to the file is followed once, when
/// this object is made. All of them are readable by their owner alone. One thread at a time, and
/// one process: to write, hold a FileLock.
#pragma once

#include "base/files/Problem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace files {

class KeptFile {
public:
    /// Further damaged files replace the last one.
    static constexpr int MaxDamaged = 5;

    /// Nothing where there is no file.
    using Content = std::optional<std::string>;

    /// Larger files than \a maxSize count as damaged, and are not written.
    KeptFile(const std::string &file, std::size_t maxSize);

    const std::string &name() const { return m_file; }
    /// Fails for a damaged file; an empty one is damaged.
    Result<Content, Problem> read() const;
    Result<Content, Problem> readLastGood() const;

    /// A failed write leaves the file as it was; if only the folder could not be synchronised, the
    /// file may also be the new one.
    Result<void, Problem> write(std::string_view bytes);
    /// Writes \a bytes, which the file holds, to its copy.
    Result<void, Problem> writeLastGood(std::string_view bytes);

    /// Moves the file out of the way, and returns its new name.
    Result<std::string, Problem> setAside();
    /// Removes what an unfinished write has left.
    void removeLeftovers();

    /// Makes \a folder and its parents, for their owner alone. Existing ones stay as they are.
    static Result<void, Problem> makeFolder(const std::string &folder);

private:
    Result<void, Problem> replace(const std::string &file, std::string_view bytes) const;

    const std::string m_file;
    const std::size_t m_maxSize;
};

} // namespace files
