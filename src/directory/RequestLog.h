// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// One line per request, METHOD SP TARGET, byte for byte as received, written at once. Only the
/// values of passwords are replaced, by "***".
#pragma once

#include "base/files/Descriptor.h"

#include <string>
#include <string_view>

namespace directory {

/// The target with the value of every "password" item replaced, the rest byte for byte.
std::string withoutPasswords(std::string_view target);

class RequestLog {
public:
    /// Appends to the file. Throws std::runtime_error when it cannot be opened, or is no regular
    /// file: a FIFO without a reader is not waited for.
    explicit RequestLog(const std::string &file);
    void write(std::string_view method, std::string_view target);

private:
    files::Descriptor m_file;
};

} // namespace directory
