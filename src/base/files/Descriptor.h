// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// An open file that is closed with this object, and the only ways in which files are opened here:
/// closed on exec, and only what is a regular file, so that no FIFO or device is waited for.
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
    /// Closes it, and tells what a file system may object to only then.
    Problem close();

private:
    int m_number = -1;
};

/// Why \a file, at the end of all links, must not be opened: it is there and no regular file, or
/// cannot be looked at. Opens nothing.
Problem refusalToOpen(const std::string &file);
/// Opens \a file with open(2)'s \a flags, and makes it with \a mode when they say so. Refuses what
/// is no regular file without opening it.
Problem openRegular(const std::string &file, int flags, mode_t mode, Descriptor &opened);

} // namespace files
