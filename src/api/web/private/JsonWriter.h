// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QVariant>

/// Implements VeskJson::write().
QByteArray writeJson(const QVariant &value);
