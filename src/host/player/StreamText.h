// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>

/// A text that a stream or its server sent, made fit to be shown: UTF-8, or Latin-1 where it is
/// not; control characters become blanks, at most 512 characters. Never null. Any thread.
QString streamText(const QByteArray &bytes);
