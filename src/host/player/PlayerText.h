// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/TrString.h"

#include <QStringList>

/// A translatable text in the context "Player"; mark \a text with QT_TRANSLATE_NOOP("Player", ...).
/// Any thread.
TrString playerText(const char *text);
/// The same with values for the placeholders %1, %2, ...
TrString playerText(const char *text, const QStringList &values);
