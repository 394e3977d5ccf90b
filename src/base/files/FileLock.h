// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The right to write what is kept beside a lock file, held by one process at a time. The system
/// knows who holds it and lets go of it when that process ends, however it ends; the file itself
/// says nothing and stays. Two of these in one process do not exclude each other. Lives on one
/// thread, or under a mutex.
#pragma once

#include "base/files/Descriptor.h"

namespace files {

class FileLock {
public:
    enum class Outcome {
        Taken,
        Elsewhere, ///< another process holds it
        Failed, ///< the lock file cannot be had
    };

    explicit FileLock(std::string file);

    /// Does nothing when it is held already. Never waits.
    Outcome take();
    bool isHeld() const { return m_descriptor.isOpen(); }
    /// Why take() did not take it, in one line; for another process, its id.
    const Problem &problem() const { return m_problem; }
    const std::string &file() const { return m_file; }

private:
    const std::string m_file;
    Descriptor m_descriptor;
    Problem m_problem;
};

} // namespace files
