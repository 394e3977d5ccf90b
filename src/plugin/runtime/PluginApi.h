// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

/// Why a plug-in that was built with this version of the SDK cannot run here; empty when it can. A
/// pure function.
QString apiProblem(int major, int minor);
