// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtCore/qglobal.h>

/// Marks what libvesk_core offers to plug-ins and hosts; everything else in the library stays
/// hidden.
#if defined(VESK_CORE_BUILD)
#define VESK_API Q_DECL_EXPORT
#else
#define VESK_API Q_DECL_IMPORT
#endif
