// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The right to write what is kept beside a lock file, held by one process at a time. The system
/// releases it when that process ends, however it ends; the file itself stays, and its content
/// means nothing. Two locks in one process do not exclude each other. One thread, or under a mutex.
#pragma once

#include "base/files/Descriptor.h"

#include <cerrno>
#include <string>

namespace files {

class FileLock {
public:
    /// Problem::error when another process holds it; the text has that process's id then.
    static constexpr int HeldElsewhere = EWOULDBLOCK;

    explicit FileLock(std::string file);

    /// Succeeds at once when it is held already. Never waits.
    Result<void, Problem> take();
    bool isHeld() const { return m_descriptor.isOpen(); }

private:
    const std::string m_file;
    Descriptor m_descriptor;
};

} // namespace files
