# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0

# The libraries this project stands on; docs/libraries.md says why each is here.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(CLI11 REQUIRED)
find_package(Boost 1.74 REQUIRED)
find_package(OpenSSL 3 REQUIRED)
pkg_check_modules(log4cplus REQUIRED IMPORTED_TARGET log4cplus)
pkg_check_modules(libcurl REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(libseccomp REQUIRED IMPORTED_TARGET libseccomp)
pkg_check_modules(libsoup REQUIRED IMPORTED_TARGET libsoup-3.0)
pkg_check_modules(gstreamer REQUIRED IMPORTED_TARGET
    gstreamer-1.0 gstreamer-app-1.0 gstreamer-audio-1.0)
pkg_check_modules(ebur128 REQUIRED IMPORTED_TARGET libebur128)
pkg_check_modules(libdw REQUIRED IMPORTED_TARGET libdw)
pkg_check_modules(libelf REQUIRED IMPORTED_TARGET libelf)
pkg_check_modules(sqlite REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(glib REQUIRED IMPORTED_TARGET glib-2.0)
pkg_check_modules(giounix REQUIRED IMPORTED_TARGET gio-unix-2.0)
pkg_check_modules(libsystemd REQUIRED IMPORTED_TARGET libsystemd)
pkg_check_modules(libbsd REQUIRED IMPORTED_TARGET libbsd)
pkg_check_modules(libqrencode REQUIRED IMPORTED_TARGET libqrencode)
pkg_check_modules(libcrypt REQUIRED IMPORTED_TARGET libcrypt)
pkg_check_modules(yamlcpp REQUIRED IMPORTED_TARGET yaml-cpp)
find_package(simdjson REQUIRED)
find_package(nlohmann_json REQUIRED)

if(VESK_BUILD_TESTS)
    find_package(GTest REQUIRED)
    include(GoogleTest)
endif()
if(VESK_BUILD_BENCHMARKS)
    find_package(benchmark REQUIRED)
endif()
