// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// What is kept of a password: a salted hash that is slow on purpose, in the notation of crypt(3).
/// Any thread.
#pragma once

#include <string>

namespace directory {

/// With a salt of its own, so it differs each time. Empty when there can be none: for a password
/// with a zero byte or of more than 512 bytes, or without randomness.
std::string passwordHash(const std::string &password);
bool passwordMatches(const std::string &password, const std::string &hash);
/// Whether the text is of the kind that passwordHash makes.
bool isPasswordHash(const std::string &text);

} // namespace directory
