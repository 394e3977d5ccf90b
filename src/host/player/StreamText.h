// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

/// Makes text from a stream or server displayable: decodes UTF-8, or Latin-1 if it is not valid
/// UTF-8, replaces control characters with spaces, and cuts it at 512 characters. Never null. Any
/// thread.
QString streamText(const QByteArray &bytes);
