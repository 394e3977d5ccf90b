// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// The pages of the web API, as functions from a request's context to its answer.
#pragma once

#include "directory/Context.h"

namespace directory {

Answer browse(const Context &context);
Answer describe(const Context &context);
Answer report(const Context &context);
Answer preset(const Context &context);
Answer account(const Context &context);
Answer tune(const Context &context);
Answer config(const Context &context);
/// Where a person links a device to an account: /mydevice, and its style sheet.
Answer claimPage(const Context &context);
Answer claimStyle();
/// The answers to a change that could not be written to the disk.
Answer notKept();
Answer claimNotKept();

} // namespace directory
