# SPDX-License-Identifier: MIT
# QML modules, interface tests, and what both need.

set(QT_QML_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml)

# tindra_qml_module(name URI Tindra.Name QML file... SOURCES file... LINK target... MODULES name...)
# A static library `tindra_<name>` that is the QML module `URI`; MODULES are others of these that
# it imports. View-models among SOURCES carry QML_ELEMENT (and QML_UNCREATABLE); DEPENDS are the URIs
# of the modules whose C++ types their properties have.
function(tindra_qml_module name)
    cmake_parse_arguments(ARG "" "URI" "QML;SOURCES;LINK;MODULES;SINGLETONS;DEPENDS" ${ARGN})
    set_source_files_properties(${ARG_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
    qt_add_library(tindra_${name} STATIC)
    # Byte code is ready at start-up; machine code of this Qt's compiler fails on gadgets' enums and
    # takes long to build.
    set_target_properties(tindra_${name} PROPERTIES QT_QMLCACHEGEN_ARGUMENTS --only-bytecode)
    qt_add_qml_module(tindra_${name}
        URI ${ARG_URI}
        VERSION 1.0
        RESOURCE_PREFIX /qt/qml
        DEPENDENCIES QtQuick ${ARG_DEPENDS}
        QML_FILES ${ARG_QML} ${ARG_SINGLETONS}
        SOURCES ${ARG_SOURCES})
    target_link_libraries(tindra_${name} PUBLIC tindra_common Qt6::Quick QCoro6::Core ${ARG_LINK})
    foreach(module ${ARG_MODULES})
        target_link_libraries(tindra_${name} PUBLIC tindra_${module})
    endforeach()
    get_target_property(sources tindra_${name} SOURCES)
    list(FILTER sources INCLUDE REGEX "qmlcache|qmltyperegistrations")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
    # The generated registration includes headers by their bare names.
    target_include_directories(tindra_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
endfunction()

# tindra_link_qml(target name...): links modules and the plugins that register them.
function(tindra_link_qml target)
    foreach(module ${ARGN})
        target_link_libraries(${target} PRIVATE tindra_${module} tindra_${module}plugin)
    endforeach()
endfunction()

# tindra_ui_test(name SOURCES file... MODULES name... LINK target...)
# A Qt Test program that shows windows without a display; theme and controls are always there.
function(tindra_ui_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;MODULES;LINK" ${ARGN})
    tindra_test(${name} SOURCES ${ARG_SOURCES} LINK tindra_ui_test_support ${ARG_LINK})
    tindra_link_qml(${name} theme controls ${ARG_MODULES})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software")
endfunction()
