# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0

# What makes faults in memory harder to use, in the build types that are installed; scripts/check-hardening looks for it in the results.
# What a distribution's flags (dpkg-buildflags) already ask for stays as they have it. Sanitizers bring their own.

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(VESK_SANITIZERS)
    return()
endif()

set(hardened $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
add_compile_options($<${hardened}:-fstack-protector-strong>)
if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^arm")
    add_compile_options($<${hardened}:-fstack-clash-protection>)
endif()
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|i.86)$")
    add_compile_options($<${hardened}:-fcf-protection>)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    add_compile_options($<${hardened}:-mbranch-protection=standard>)
endif()
add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)

# 3 since GCC 12 and clang 9, given a C library of that age.
if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
    add_compile_options($<${hardened}:-U_FORTIFY_SOURCE> $<${hardened}:-D_FORTIFY_SOURCE=3>)
endif()
