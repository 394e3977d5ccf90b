# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0

# With VESK_PCH, the headers of libraries that most sources include are compiled once, ahead of them. No
# source may count on that: each includes what it uses, and what is done without VESK_PCH, such as
# the builds dev and clang and scripts/tidy, fails where one does not.
#
# There are four sets, as flags and libraries differ: with Qt or without (plain), for the product or for
# tests.

option(VESK_PCH "Compile the headers that most sources include once, ahead" OFF)

if(VESK_PCH AND VESK_CCACHE)
    # ccache takes no part in it otherwise: it cannot see which macros a set depends on, nor whether it
    # holds the time. The compiler checks the former, and no header here uses the latter.
    list(PREPEND CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros)
endif()

# vesk_precompiled(TARGET SET): one of qt, plain, qt_test, plain_test.
function(vesk_precompiled target set)
    if(VESK_PCH)
        target_link_libraries(${target} PRIVATE vesk_pch_flags)
        target_precompile_headers(${target} REUSE_FROM vesk_pch_${set})
    endif()
endfunction()

# vesk_precompiled_set(SET LIBRARIES...): the set of cmake/precompiled/SET.h, compiled with the flags of
# the folder's targets.
function(vesk_precompiled_set set)
    if(NOT VESK_PCH)
        return()
    endif()
    set(name vesk_pch_${set})
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(${name} OBJECT ${source})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${name} PRIVATE ${ARGN} vesk_pch_flags vesk_build)
    target_precompile_headers(${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled/${set}.h)
endfunction()

if(VESK_PCH)
    # The compiler takes a set only where this is the same, and some libraries ask for it.
    add_library(vesk_pch_flags INTERFACE)
    target_compile_options(vesk_pch_flags INTERFACE -pthread)
endif()
