# SPDX-License-Identifier: MIT
# What every target of this project has in common.

configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.h.in ${PROJECT_BINARY_DIR}/generated/TindraVersion.h)

add_library(tindra_common INTERFACE)
target_include_directories(tindra_common INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
target_compile_definitions(tindra_common INTERFACE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
target_compile_options(tindra_common INTERFACE -pthread -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    $<$<BOOL:${TINDRA_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # It takes a short text in front of a std::string for an overlap (GCC bug 105651).
    target_compile_options(tindra_common INTERFACE -Wno-restrict)
endif()
if(CMAKE_UNITY_BUILD)
    # GCC takes the frames of coroutines for types that other files see too, unless they stand in
    # the file that it was called with.
    target_compile_options(tindra_common INTERFACE -Wno-subobject-linkage)
endif()
if(TINDRA_SANITIZE MATCHES thread)
    # Asio has fences beside its locks; this sanitizer sees only the locks.
    target_compile_options(tindra_common INTERFACE -Wno-tsan)
endif()
if(TINDRA_SANITIZE)
    # WebKitGTK has no type information, and Qt Test's mouse casts every application to one of
    # widgets: the check of dynamic types finds only these.
    target_compile_options(tindra_common INTERFACE -fsanitize=${TINDRA_SANITIZE} -fno-sanitize=vptr
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tindra_common INTERFACE -fsanitize=${TINDRA_SANITIZE})
endif()

# What is shipped reads pages from the network and holds a password.
add_library(tindra_hardening INTERFACE)
target_compile_options(tindra_hardening INTERFACE
    $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2;-fstack-protector-strong;-fstack-clash-protection>)
target_link_options(tindra_hardening INTERFACE $<$<CONFIG:Release>:-Wl,-z,relro,-z,now>)

# tindra_precompiled(name HEADERS header... LINK target... [OPTIONS flag...])
# A header that is compiled once, for all targets that do REUSE_FROM `tindra_<name>`.
function(tindra_precompiled name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LINK;OPTIONS" ${ARGN})
    add_library(tindra_${name} STATIC ${PROJECT_SOURCE_DIR}/cmake/pch.cpp)
    target_link_libraries(tindra_${name} PRIVATE tindra_common ${ARG_LINK})
    target_compile_options(tindra_${name} PRIVATE ${ARG_OPTIONS})
    target_precompile_headers(tindra_${name} PRIVATE ${ARG_HEADERS})
endfunction()

tindra_precompiled(pch HEADERS ${PROJECT_SOURCE_DIR}/cmake/pch.h LINK tindra_hardening Qt6::Core QCoro6::Core)

# tindra_batches(target)
# Where CMAKE_UNITY_BUILD is on, batches of the target's files are compiled as one, so that headers
# are read once a batch. The presets switch it on for all but `dev`, where a change rebuilds one
# small file, and where every file is seen to include what it needs.
function(tindra_batches target)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    list(LENGTH sources count)
    math(EXPR batches "(${count} + ${TINDRA_BATCH} - 1) / ${TINDRA_BATCH}")
    math(EXPR size "(${count} + ${batches} - 1) / ${batches}")
    set_target_properties(${target} PROPERTIES UNITY_BUILD_BATCH_SIZE ${size})
endfunction()

# tindra_library(room SOURCES file... LINK target...)
# A static library `tindra_<room>` of the folder it is called in.
function(tindra_library room)
    cmake_parse_arguments(ARG "NO_QT" "" "SOURCES;LINK;LINK_PRIVATE" ${ARGN})
    add_library(tindra_${room} STATIC ${ARG_SOURCES})
    tindra_batches(tindra_${room})
    target_link_libraries(tindra_${room} PUBLIC tindra_common ${ARG_LINK}
        PRIVATE tindra_hardening ${ARG_LINK_PRIVATE})
    if(NOT ARG_NO_QT)
        tindra_uses_qt(tindra_${room} PUBLIC)
    endif()
endfunction()

# tindra_program(name SOURCES file... LINK target... [PCH target])
function(tindra_program name)
    cmake_parse_arguments(ARG "NO_QT" "PCH" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    tindra_batches(${name})
    target_link_libraries(${name} PRIVATE tindra_common tindra_hardening ${ARG_LINK})
    if(NOT ARG_NO_QT)
        tindra_uses_qt(${name} PRIVATE ${ARG_PCH})
    endif()
endfunction()

# For these two. Qt's own targets need no moc, so it is not switched on for all.
function(tindra_uses_qt target visibility)
    if(NOT ARGN)
        set(ARGN tindra_pch)
    endif()
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_link_libraries(${target} ${visibility} Qt6::Core QCoro6::Core)
    target_precompile_headers(${target} REUSE_FROM ${ARGN})
endfunction()
