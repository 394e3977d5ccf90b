// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

/// \a text as a QR code with the quiet zone around it, in lines of block elements: each character
/// is two modules, one above the other, and what is drawn are the light ones, as for light text on
/// a dark ground. No lines when it does not fit into \a width columns. Any thread.
QStringList qrText(const QString &text, int width);
