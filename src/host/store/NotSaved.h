// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/CMError.h"
#include "base/files/Problem.h"

/// Why a change was not saved, in words for whoever asked for it.
CMError notSavedError(const files::Problem &problem);
/// More changes wait for the disk than may.
CMError diskBusyError();
