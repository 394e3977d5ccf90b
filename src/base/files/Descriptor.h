// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// An open file that is closed with this object, and how files are opened here: close-on-exec, and
/// regular files only, so that no FIFO or device can block.
#pragma once

#include "base/files/Problem.h"

#include <string>
#include <sys/types.h>
#include <utility>

namespace files {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor();

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }
    /// Closes it, and reports errors of earlier writes, which some file systems hold back until
    /// then.
    Result<void, Problem> close();

private:
    int m_number = -1;
};

/// Whether \a file may be opened: at the end of all links there is a regular file, or nothing yet.
/// Opens nothing.
Result<void, Problem> checkRegular(const std::string &file);
/// Opens \a file with open(2)'s \a flags; \a mode is for O_CREAT. What is no regular file is
/// refused without opening it.
Result<Descriptor, Problem> openRegular(const std::string &file, int flags, mode_t mode = 0);

} // namespace files
