# SPDX-License-Identifier: MIT
# What every target of this project has in common.

add_library(tindra_common INTERFACE)
target_include_directories(tindra_common INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(tindra_common INTERFACE
    QT_NO_KEYWORDS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    TINDRA_VERSION="${PROJECT_VERSION}")
target_compile_options(tindra_common INTERFACE -pthread -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    $<$<BOOL:${TINDRA_WERROR}>:-Werror>)
# What is shipped reads pages from the network and holds a password.
target_compile_options(tindra_common INTERFACE
    $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2;-fstack-protector-strong;-fstack-clash-protection>)
target_link_options(tindra_common INTERFACE $<$<CONFIG:Release>:-Wl,-z,relro,-z,now>)
if(TINDRA_SANITIZE)
    target_compile_options(tindra_common INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer)
    target_link_options(tindra_common INTERFACE -fsanitize=address,undefined)
endif()

# One precompiled header serves every Qt target; it is compiled once, here.
add_library(tindra_pch STATIC ${PROJECT_SOURCE_DIR}/cmake/pch.cpp)
target_link_libraries(tindra_pch PUBLIC tindra_common Qt6::Core QCoro6::Core)
target_precompile_headers(tindra_pch PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch.h)

# tindra_library(room SOURCES file... LINK target...)
# A static library `tindra_<room>` of the folder it is called in.
function(tindra_library room)
    cmake_parse_arguments(ARG "NO_PCH" "" "SOURCES;LINK;LINK_PRIVATE" ${ARGN})
    add_library(tindra_${room} STATIC ${ARG_SOURCES})
    target_link_libraries(tindra_${room} PUBLIC tindra_common ${ARG_LINK} PRIVATE ${ARG_LINK_PRIVATE})
    if(NOT ARG_NO_PCH)
        target_link_libraries(tindra_${room} PUBLIC Qt6::Core QCoro6::Core)
        target_precompile_headers(tindra_${room} REUSE_FROM tindra_pch)
    endif()
endfunction()

# tindra_test(name SOURCES file... LINK target... [DISPLAY])
# A Qt Test program run by ctest; with DISPLAY it gets a virtual one of its own.
function(tindra_test name)
    cmake_parse_arguments(ARG "DISPLAY" "TIMEOUT" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE tindra_common Qt6::Core QCoro6::Core Qt6::Test ${ARG_LINK})
    target_precompile_headers(${name} REUSE_FROM tindra_pch)
    target_compile_definitions(${name} PRIVATE TINDRA_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    if(ARG_DISPLAY)
        add_test(NAME ${name} COMMAND xvfb-run -a -s "-screen 0 1400x1000x24" $<TARGET_FILE:${name}>)
    else()
        add_test(NAME ${name} COMMAND ${name})
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
endfunction()
