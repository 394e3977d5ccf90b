// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/apinote.h"

#include <QtGlobal>

#include <stdexcept>

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *)
{
    throw std::runtime_error("no licence");
}
