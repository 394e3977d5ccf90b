// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Salted, deliberately slow hashes of passwords, in the notation of crypt(3). Any thread.
#pragma once

#include <string>

namespace directory {

/// With a new salt, so it differs each time. Empty on failure: for a password with a zero byte or
/// of more than 512 bytes, or when the system has no randomness.
std::string passwordHash(const std::string &password);
bool passwordMatches(const std::string &password, const std::string &hash);
/// Whether the text is of the kind that passwordHash makes.
bool isPasswordHash(const std::string &text);

} // namespace directory
