// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/core/version.h"

/// \file
/// Marks each library that includes this with the version of the SDK that it was built with: an ELF
/// note with the owner "Vesk", of type 1, and two 32-bit numbers, the major and the minor version.
/// A host reads it before it loads the library. A section group keeps it once in a library, and the
/// flag R keeps it where the linker removes what nothing refers to.

#define VESK_API_NOTE_TEXT_(text) #text
#define VESK_API_NOTE_TEXT(text) VESK_API_NOTE_TEXT_(text)

#ifdef __ELF__
__asm__(".pushsection .note.vesk.api,\"aGR\",%note,vesk_api_note,comdat\n\t"
        ".p2align 2\n\t"
        ".long 5, 8, 1\n\t"
        ".asciz \"Vesk\"\n\t"
        ".p2align 2\n\t"
        ".long " VESK_API_NOTE_TEXT(VESK_API_MAJOR) ", " VESK_API_NOTE_TEXT(
            VESK_API_MINOR) "\n\t"
                            ".popsection");
#endif
