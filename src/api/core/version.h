// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// \file
/// The version of the SDK's interface. A host runs plug-ins that were built with the same major
/// version and the same or an earlier minor one; before 1.0, those with the same minor one.

#define VESK_API_MAJOR 0
#define VESK_API_MINOR 1
