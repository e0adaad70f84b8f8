# SPDX-License-Identifier: MIT
# What all targets of the project have in common, and how a room is declared.

set(CMAKE_CXX_STANDARD 11)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# A program finds the library in the build by its own place, not by the name of the folder.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# Measured with -O2; -O3 makes the library larger and nothing faster.
string(REPLACE "-O3" "-O2" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release)
endif()

add_library(nuv_options INTERFACE)
target_compile_options(nuv_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
# Qt 6 counts in 64 bits what fits into an int, as longer documents are not read. The rooms say so at
# every such place; programs and tests need not.
if(NUV_QT_MAJOR_VERSION EQUAL 6)
    target_compile_options(nuv_options INTERFACE
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:NUV_IS_ROOM>>>:-Wno-conversion>
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:NUV_IS_ROOM>>>:-Wno-narrowing>)
endif()
# Calls into the toolkit go straight through the table of addresses: all of them are resolved when the
# library is loaded, so the stubs for later would only be passed through. (gcc before 6 has no such
# option.)
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-plt NUV_HAVE_NO_PLT)
if(NUV_HAVE_NO_PLT)
    target_compile_options(nuv_options INTERFACE -fno-plt)
endif()
if(NUV_WARNINGS_AS_ERRORS)
    target_compile_options(nuv_options INTERFACE -Werror)
endif()
if(NUV_SANITIZERS)
    set(nuv_sanitize -fsanitize=${NUV_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(nuv_options INTERFACE ${nuv_sanitize})
    target_link_options(nuv_options INTERFACE ${nuv_sanitize})
endif()
if(NUV_BUILD_FUZZERS)
    target_compile_options(nuv_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(NUV_HARDENING)
    include(NuvHardening)
endif()

# Two builds of the same sources in different folders are the same to the byte. Who debugs wants to
# find the sources where they are.
check_cxx_compiler_flag(-ffile-prefix-map=/nowhere=. NUV_HAVE_FILE_PREFIX_MAP)
if(NUV_HAVE_FILE_PREFIX_MAP)
    target_compile_options(nuv_options INTERFACE
        "$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>"
        "$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
endif()

# Includes are written from the root; the export header is made by the build.
target_include_directories(nuv_options INTERFACE
    "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/include")

# nuv_add_room(NAME SOURCES ... USES ...): a folder of the library as the object library nuv_NAME.
# Object libraries hand on no objects of the rooms they use, so whoever links one names those as well.
function(nuv_add_room name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
    add_library(nuv_${name} OBJECT ${ARG_SOURCES})
    set_target_properties(nuv_${name} PROPERTIES NUV_IS_ROOM ON)
    target_link_libraries(nuv_${name} PRIVATE nuv_options PUBLIC ${ARG_USES})
endfunction()
