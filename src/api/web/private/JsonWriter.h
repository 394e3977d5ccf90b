// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QVariant>

/// \a value as VeskJson::write() promises it.
QByteArray writeJson(const QVariant &value);
