# SPDX-License-Identifier: MIT
# QML modules.

set(QT_QML_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml)

tindra_precompiled(ui_pch HEADERS ${PROJECT_SOURCE_DIR}/cmake/pch.h ${PROJECT_SOURCE_DIR}/cmake/ui_pch.h
    LINK tindra_hardening Qt6::Quick QCoro6::Core)

# tindra_qml_module(name URI Tindra.Name QML file... SOURCES file... LINK target... MODULES name...)
# A static library `tindra_<name>` that is the QML module `URI`; MODULES are others of these that
# it imports. View-models among SOURCES carry QML_ELEMENT (and QML_UNCREATABLE); DEPENDS are the URIs
# of the modules whose C++ types their properties have.
function(tindra_qml_module name)
    cmake_parse_arguments(ARG "" "URI" "QML;SOURCES;LINK;MODULES;DEPENDS" ${ARGN})
    qt_add_library(tindra_${name} STATIC)
    # Byte code is ready at start-up; machine code of this Qt's compiler fails on gadgets' enums and
    # takes long to build.
    set_target_properties(tindra_${name} PROPERTIES
        AUTOMOC ON
        QT_QMLCACHEGEN_ARGUMENTS --only-bytecode)
    qt_add_qml_module(tindra_${name}
        URI ${ARG_URI}
        VERSION 1.0
        RESOURCE_PREFIX /qt/qml
        DEPENDENCIES QtQuick ${ARG_DEPENDS}
        QML_FILES ${ARG_QML}
        SOURCES ${ARG_SOURCES})
    target_link_libraries(tindra_${name} PUBLIC tindra_common Qt6::Quick QCoro6::Core ${ARG_LINK})
    foreach(module ${ARG_MODULES})
        target_link_libraries(tindra_${name} PUBLIC tindra_${module})
    endforeach()
    # The generated registration includes headers by their bare names.
    target_include_directories(tindra_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})

    # What is generated is a file for each of QML's, which are compiled together.
    get_target_property(sources tindra_${name} SOURCES)
    set(byteCode ${sources})
    list(FILTER byteCode INCLUDE REGEX "/qmlcache/")
    set_source_files_properties(${byteCode} PROPERTIES UNITY_GROUP byteCode)
    set_target_properties(tindra_${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    if(CMAKE_UNITY_BUILD)
        set_source_files_properties(${ARG_SOURCES} PROPERTIES UNITY_GROUP sources)
    endif()
    list(FILTER sources INCLUDE REGEX "qmltyperegistrations")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
    foreach(target tindra_${name} tindra_${name}plugin tindra_${name}plugin_init tindra_${name}_qmlcache)
        if(TARGET ${target})
            target_link_libraries(${target} PRIVATE tindra_common tindra_hardening)
            target_precompile_headers(${target} REUSE_FROM tindra_ui_pch)
        endif()
    endforeach()
endfunction()

# tindra_link_qml(target name...): links modules and the plugins that register them.
function(tindra_link_qml target)
    foreach(module ${ARGN})
        target_link_libraries(${target} PRIVATE tindra_${module} tindra_${module}plugin)
    endforeach()
endfunction()
