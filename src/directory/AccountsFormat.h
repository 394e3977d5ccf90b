// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The members as the text of an accounts file, and back. JSON with a version; passwords are in it
/// as hashes, sessions are not.
#pragma once

#include "base/Result.h"
#include "directory/Members.h"

#include <string>

namespace directory {

/// Devices without presets, account or claim code are left out.
std::string formatAccounts(const MembersContent &content);
/// Takes only what could have been written. The error is one line that says where the mistake is,
/// without repeating anything of the text.
Result<MembersContent, std::string> parseAccounts(const std::string &text);

} // namespace directory
