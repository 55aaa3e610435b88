# SPDX-License-Identifier: MIT
# Tests: a program a room, an entry of ctest a test class.

# Nobody waits for tests to be optimized.
set(testOptions -O0)
# Qt Test offers more where it finds some of these, and names the folder that it is used in. All
# programs see the same, so that one precompiled header serves them.
set(testLibraries Qt6::Core QCoro6::Core Qt6::Network Qt6::Test Qt6::Widgets)
get_target_property(testDefinitions Qt6::Test INTERFACE_COMPILE_DEFINITIONS)
list(FILTER testDefinitions EXCLUDE REGEX QT_TESTCASE)
set_target_properties(Qt6::Test PROPERTIES INTERFACE_COMPILE_DEFINITIONS "${testDefinitions}")
set(testHeaders ${PROJECT_SOURCE_DIR}/cmake/pch.h <QJsonDocument> <QProcess> <QTemporaryDir> <QTest>)
tindra_precompiled(test_pch HEADERS ${testHeaders} LINK ${testLibraries} OPTIONS ${testOptions})
tindra_precompiled(ui_test_pch HEADERS ${testHeaders} ${PROJECT_SOURCE_DIR}/cmake/ui_pch.h <QQuickWindow>
    LINK ${testLibraries} Qt6::Quick OPTIONS ${testOptions})

# tindra_test_executable(name LINK target... [SHOWS_WINDOWS])
# A program that is built as tests are, when it is asked for; its sources are added later.
function(tindra_test_executable name)
    cmake_parse_arguments(ARG "SHOWS_WINDOWS" "" "LINK" ${ARGN})
    add_executable(${name} EXCLUDE_FROM_ALL)
    set_target_properties(${name} PROPERTIES AUTOMOC ON UNITY_BUILD_BATCH_SIZE 6)
    target_link_libraries(${name} PRIVATE tindra_common ${ARG_LINK} ${testLibraries})
    target_compile_options(${name} PRIVATE ${testOptions})
    set_target_properties(${name} PROPERTIES TINDRA_SHOWS_WINDOWS "${ARG_SHOWS_WINDOWS}")
    if(ARG_SHOWS_WINDOWS)
        target_precompile_headers(${name} REUSE_FROM tindra_ui_test_pch)
    else()
        target_precompile_headers(${name} REUSE_FROM tindra_test_pch)
    endif()
endfunction()

# tindra_test_program(room LINK target... [SHOWS_WINDOWS])
# The program `<room>_tests` of the folder's tests; see tests/support/TestProgram.h.
function(tindra_test_program room)
    tindra_test_executable(${room}_tests ${ARGN})
    set_property(GLOBAL APPEND PROPERTY TINDRA_TEST_PROGRAMS ${room}_tests)
    target_link_libraries(${room}_tests PRIVATE tindra_test_program)
    target_compile_definitions(${room}_tests PRIVATE TINDRA_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
endfunction()

# tindra_test(room Class file.cpp [DISPLAY] [TIMEOUT seconds] [STARTS target...])
# Adds a test class to its room's program, and to ctest as `<room>.<Class>`. With DISPLAY it gets a
# virtual one of its own; the programs that it STARTS are built with it.
function(tindra_test room class source)
    cmake_parse_arguments(ARG "DISPLAY" "TIMEOUT" "STARTS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    target_sources(${room}_tests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${source})
    set(command $<TARGET_FILE:${room}_tests> --filter ${class})
    if(ARG_DISPLAY)
        list(PREPEND command xvfb-run -a -s "-screen 0 1400x1000x24")
    endif()
    add_test(NAME ${room}.${class} COMMAND ${command})
    # What may take long begins first.
    set_tests_properties(${room}.${class} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT} COST ${ARG_TIMEOUT} LABELS ${room})
    # WebKit, fontconfig and Qt Quick keep what they have until the process ends.
    get_target_property(showsWindows ${room}_tests TINDRA_SHOWS_WINDOWS)
    if(showsWindows OR ARG_DISPLAY)
        set_tests_properties(${room}.${class} PROPERTIES ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
    endif()
    if(ARG_STARTS)
        add_dependencies(${room}_tests ${ARG_STARTS})
    endif()
endfunction()
