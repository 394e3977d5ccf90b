// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Aborts a fuzz run when \a condition does not hold; libFuzzer then saves the input.
#define FUZZ_REQUIRE(condition)                                                                    \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition);    \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

/// libFuzzer calls this with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
