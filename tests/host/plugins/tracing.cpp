// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

// A plug-in that says on standard error when anything of it is executed. Built with the note of
// this SDK, of a later one, and without any.
#include "api/core/version.h"

#ifdef VESK_TEST_MINOR
#undef VESK_API_MINOR
#define VESK_API_MINOR VESK_TEST_MINOR
#endif
#ifndef VESK_TEST_WITHOUT_NOTE
#include "api/core/apinote.h"
#endif

#include <QtGlobal>

#include <cstdio>

namespace {

[[maybe_unused]] const int Executed = std::fputs("something of it is executed\n", stderr);

} // namespace

extern "C" Q_DECL_EXPORT void *worker_create(const char *, void *)
{
    return nullptr;
}
