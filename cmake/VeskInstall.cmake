# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0

# The SDK as others build against it: library, headers, CMake package (Vesk::Core) and pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS vesk_core EXPORT VeskCoreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${CMAKE_SOURCE_DIR}/src/api DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vesk
    FILES_MATCHING PATTERN "*.h"
    PATTERN "CMCallGate.h" EXCLUDE
    PATTERN "CMContextCall.h" EXCLUDE
    PATTERN "CMPathForm.h" EXCLUDE
    PATTERN "CMRoleTable.h" EXCLUDE
    PATTERN "HttpSettings.h" EXCLUDE
    PATTERN "utf8.h" EXCLUDE
    PATTERN "private" EXCLUDE)
install(EXPORT VeskCoreTargets NAMESPACE Vesk:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VeskCore)

configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/VeskCoreConfig.cmake.in
    ${CMAKE_BINARY_DIR}/VeskCoreConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VeskCore)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VeskCoreConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${CMAKE_BINARY_DIR}/VeskCoreConfig.cmake
    ${CMAKE_BINARY_DIR}/VeskCoreConfigVersion.cmake
    ${CMAKE_SOURCE_DIR}/cmake/VeskPlugin.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/VeskCore)

file(RELATIVE_PATH VESK_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_SOURCE_DIR}/cmake/vesk-core.pc.in ${CMAKE_BINARY_DIR}/vesk-core.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/vesk-core.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The walk-through and the plug-in that it builds.
install(FILES ${CMAKE_SOURCE_DIR}/docs/sdk.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vesk)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vesk)
