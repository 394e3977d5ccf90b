// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/core/apinote.h"

#include <QtGlobal>

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *)
{
    return nullptr;
}
