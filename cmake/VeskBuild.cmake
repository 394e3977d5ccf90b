# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0

# How everything here is compiled, and where the results lie in the build folder.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/archive)
set(VESK_PLUGIN_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib/vesk/plugins)
set(VESK_PLUGIN_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/vesk/plugins)
set(VESK_LIBEXEC_INSTALL_DIR ${CMAKE_INSTALL_LIBEXECDIR}/vesk)
# Of the SDK's interface, for the descriptors of plug-ins; src/api/core/version.h has it for C++.
set(VESK_API_VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# Programs and plug-ins find the SDK beside themselves, in the build folder as where they are installed.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

find_program(VESK_CCACHE ccache)
if(VESK_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VESK_CCACHE})
endif()

# The flags of the project's own code; a program built against the installed SDK does not inherit them.
add_library(vesk_build INTERFACE)
target_compile_options(vesk_build INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual $<$<BOOL:${VESK_WERROR}>:-Werror>
    # What api/core/Mutex.h declares of locks.
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>
    -fno-omit-frame-pointer
    # Log records name files from the project's root on, wherever it was built.
    -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)
target_compile_definitions(vesk_build INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
    QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Files of more than 2 GiB. How wide a time is must be as in the libraries: what the distribution sets.
    target_compile_definitions(vesk_build INTERFACE _FILE_OFFSET_BITS=64)
endif()
target_include_directories(vesk_build INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_link_options(vesk_build INTERFACE -Wl,--as-needed)
if(VESK_SANITIZERS)
    add_compile_options(-fsanitize=${VESK_SANITIZERS} -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VESK_SANITIZERS})
    if(VESK_SANITIZERS MATCHES address AND NOT VESK_BUILD_FUZZERS)
        add_library(vesk_sanitizer_options OBJECT ${CMAKE_SOURCE_DIR}/cmake/sanitizer_options.cpp)
        set_target_properties(vesk_sanitizer_options PROPERTIES AUTOMOC OFF)
        target_sources(vesk_build INTERFACE
            $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:vesk_sanitizer_options>>)
        target_link_options(vesk_build INTERFACE
            $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-Wl,--wrap=main>)
    endif()
else()
    target_link_options(vesk_build INTERFACE -Wl,--no-undefined)
endif()
if(VESK_BUILD_FUZZERS)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# vesk_test(NAME SOURCES... [LIBRARIES ...]): one GoogleTest program whose cases CTest runs one by one.
# IN_PROCESS: it starts hosts, so that its cases run a second time with plug-ins in the hosts' own
# process, but for those that the patterns after NOT_IN_PROCESS name. PLAIN: without Qt.
# WAITS: most of their time its cases wait, for streams, time limits or programs; they get the label
# "waits", so that more of them can run side by side than the machine has cores. COST: how long its
# longest cases take, in seconds; CTest begins with those. UNSANITIZED: the patterns of cases that
# check what a sanitizer changes, such as how much memory is in use. A build without one gives them the
# label "unsanitized"; the target unsanitized_tests builds their programs. THREADS: the patterns of cases
# that hand things between threads; with the thread sanitizer their label is "threads", the target
# threads_tests.
function(vesk_test name)
    cmake_parse_arguments(arg "IN_PROCESS;PLAIN;WAITS" "TIMEOUT;COST"
        "SOURCES;LIBRARIES;PROPERTIES;NOT_IN_PROCESS;UNSANITIZED;THREADS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} vesk_build GTest::gmock)
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
    if(arg_PLAIN)
        set_target_properties(${name} PROPERTIES AUTOMOC OFF)
        vesk_precompiled(${name} plain_test)
    else()
        vesk_precompiled(${name} qt_test)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    if(arg_WAITS)
        list(APPEND arg_PROPERTIES LABELS waits)
    endif()
    if(arg_COST)
        list(APPEND arg_PROPERTIES COST ${arg_COST})
    endif()
    set(label)
    if(arg_UNSANITIZED AND NOT VESK_SANITIZERS)
        set(label unsanitized)
        list(JOIN arg_UNSANITIZED ":" labelled)
    elseif(arg_THREADS AND VESK_SANITIZERS STREQUAL "thread")
        set(label threads)
        list(JOIN arg_THREADS ":" labelled)
    endif()
    set(others)
    if(label)
        set(others TEST_FILTER "-${labelled}")
        gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
            TEST_LIST ${name}_LABELLED_TESTS TEST_FILTER "${labelled}"
            PROPERTIES TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES} LABELS ${label})
        add_dependencies(${label}_tests ${name})
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 ${others}
        PROPERTIES TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES})
    if(arg_IN_PROCESS)
        list(JOIN arg_NOT_IN_PROCESS ":" without)
        gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
            TEST_PREFIX InProcess. TEST_LIST ${name}_IN_PROCESS_TESTS TEST_FILTER "-${without}"
            PROPERTIES TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES} ENVIRONMENT VESK_TEST_IN_PROCESS=1)
    endif()
endfunction()
