# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0

# vesk_add_plugin(NAME SOURCES FILE... [TRANSLATIONS FILE.ts...])
#
# The plug-in libvesk_cb_NAME.so, whose service id is NAME, with its descriptor, libvesk_cb_NAME.json of the
# source folder, beside it: in the build folder and where `cmake --install` puts it, in VESK_PLUGIN_DIR. The
# catalogues, NAME_LANGUAGE.ts, are compiled into the folder "translations" beside both. The target is
# vesk_cb_NAME.
function(vesk_add_plugin name)
    cmake_parse_arguments(arg "" "" "SOURCES;TRANSLATIONS" ${ARGN})
    if(NOT arg_SOURCES OR arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vesk_add_plugin(NAME SOURCES FILE... [TRANSLATIONS FILE.ts...])")
    endif()
    set(target vesk_cb_${name})
    add_library(${target} MODULE ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE Vesk::Core)
    set_target_properties(${target} PROPERTIES
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
    install(TARGETS ${target} LIBRARY DESTINATION ${VESK_PLUGIN_DIR})

    set(descriptor ${CMAKE_CURRENT_SOURCE_DIR}/lib${target}.json)
    configure_file(${descriptor} ${CMAKE_CURRENT_BINARY_DIR}/lib${target}.json COPYONLY)
    install(FILES ${descriptor} DESTINATION ${VESK_PLUGIN_DIR})

    if(arg_TRANSLATIONS)
        find_package(Qt${VESK_QT} REQUIRED COMPONENTS LinguistTools)
        set(folder ${CMAKE_CURRENT_BINARY_DIR}/translations)
        file(MAKE_DIRECTORY ${folder})
        set_source_files_properties(${arg_TRANSLATIONS} PROPERTIES OUTPUT_LOCATION ${folder})
        qt_add_translation(catalogues ${arg_TRANSLATIONS})
        add_custom_target(${target}_translations ALL DEPENDS ${catalogues})
        install(FILES ${catalogues} DESTINATION ${VESK_PLUGIN_DIR}/translations)
    endif()
endfunction()
