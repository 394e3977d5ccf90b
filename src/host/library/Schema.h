// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

/// The steps, in SQL, by which the tables of the database came to be what they are; the file's
/// user_version is how many of them it has behind it. A step that was released never changes: add
/// another one.
const std::vector<const char *> &librarySchema();
