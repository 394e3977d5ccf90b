# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0

# The major version of Qt that everything here is built with. Programs, SDK and plug-ins that run together need the same one.

set(VESK_QT "" CACHE STRING "Major version of Qt, 5 or 6; empty for the one that is installed, 5 if both are")
if(NOT VESK_QT)
    find_package(Qt5 5.15 QUIET COMPONENTS Core LinguistTools)
    if(Qt5_FOUND)
        set(VESK_QT 5)
    else()
        set(VESK_QT 6)
    endif()
endif()
if(VESK_QT EQUAL 5)
    set(VESK_QT_VERSION 5.15)
elseif(VESK_QT EQUAL 6)
    set(VESK_QT_VERSION 6.4)
else()
    message(FATAL_ERROR "VESK_QT is 5 or 6, not \"${VESK_QT}\".")
endif()
find_package(Qt${VESK_QT} ${VESK_QT_VERSION} REQUIRED COMPONENTS Core LinguistTools)
message(STATUS "Qt ${Qt${VESK_QT}Core_VERSION}")
