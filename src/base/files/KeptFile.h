// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// A small file that outlives the program: settings, an id, accounts. Each write replaces it as a
/// whole or leaves it as it was, and has reached the disk when it says so. Beside the file lie
///
/// - FILE.last-good: what it held last, for the day on which it is damaged,
/// - FILE.damaged, FILE.damaged.2 and so on: what stood in its place and could not be read,
/// - FILE.new: a write that has not come to its end; nothing is ever read from it.
///
/// What is no regular file in any of these places is not opened. A link to the file is followed
/// once, when this object is made. All of them are for their owner alone. Not for two threads at a
/// time, nor for two processes: whoever writes holds a FileLock.
#pragma once

#include "base/files/Problem.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace files {

class KeptFile {
public:
    /// Damaged files beyond this many take the place of the last one.
    static constexpr int MaxDamaged = 5;

    struct Content {
        enum State { Missing, Read, Damaged };
        State state = Missing;
        std::string bytes; ///< when it was read
        std::string problem; ///< in one line, when it is damaged
    };

    /// Larger contents than \a maxSize are taken for damaged, and are not written.
    KeptFile(const std::string &file, std::size_t maxSize);

    const std::string &name() const { return m_file; }
    /// An empty file is a damaged one.
    Content read() const;
    Content readLastGood() const;

    /// When it fails the file is as it was; if only the folder could not be brought to the disk,
    /// it may also be the new one.
    Problem write(std::string_view bytes);
    /// Keeps \a bytes, which the file holds, for the day on which it does not.
    Problem writeLastGood(std::string_view bytes);

    /// Moves what stands in the file's place out of the way. \a name gets the name that it has
    /// then.
    Problem setAside(std::string &name);
    /// Removes what a write that did not come to its end has left.
    void removeLeftovers();

    /// Makes \a folder, and those above it, for their owner alone. Leaves those that are there.
    static Problem makeFolder(const std::string &folder);

private:
    Problem replace(const std::string &file, std::string_view bytes) const;

    const std::string m_file;
    const std::size_t m_maxSize;
};

} // namespace files
