// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QStringList>

/// A text of the player's: \a text as QT_TRANSLATE_NOOP("Player", ...) marks it. Any thread.
TrString playerText(const char *text);
/// The same with a value for each place in it.
TrString playerText(const char *text, const QStringList &values);
