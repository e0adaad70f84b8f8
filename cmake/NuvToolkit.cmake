# SPDX-License-Identifier: MIT
# Finds the toolkit and gives its modules the same names, whatever its major version:
#   nuv::Core, nuv::WebKit (with NUV_WITH_HOOKS), nuv::Test (with BUILD_TESTING).
# nuv_toolkit_modules has the toolkit's own names of what the library needs, nuv_toolkit_version the
# oldest version that it needs.

set(nuv_toolkit_modules "")

function(nuv_name_module name)
    add_library(nuv_toolkit_${name} INTERFACE)
    target_link_libraries(nuv_toolkit_${name} INTERFACE ${ARGN})
    add_library(nuv::${name} ALIAS nuv_toolkit_${name})
    if(NOT name STREQUAL "Test")
        set(nuv_toolkit_modules ${nuv_toolkit_modules} ${ARGN} PARENT_SCOPE)
    endif()
endfunction()

# nuv_refuse_qt4(QMAKE MODULE...): ends with what the search for Qt 4 lacks: a qmake of it, or one of
# the modules. QMAKE is the one that was looked at, if any.
function(nuv_refuse_qt4 qmake)
    set(version "")
    if(EXISTS "${qmake}")
        execute_process(COMMAND "${qmake}" -query QT_VERSION
            OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    endif()
    set(missing "")
    foreach(module IN LISTS ARGN)
        string(TOUPPER "QT_${module}_LIBRARY" library)
        if(NOT ${library})
            string(APPEND missing " ${module}")
        endif()
    endforeach()

    set(reason "none was found")
    if(version MATCHES "^4")
        set(reason "${qmake} is of Qt ${version} and has no${missing}")
    elseif(version)
        set(reason "${qmake} is of Qt ${version}")
    elseif(qmake)
        set(reason "${qmake} is no qmake")
    endif()
    message(FATAL_ERROR
        "NUV_QT_MAJOR_VERSION is 4, which needs the qmake of a Qt 4.8, but ${reason}.\n"
        "Name it with -DQT_QMAKE_EXECUTABLE=... on the command line, or with "
        "set(QT_QMAKE_EXECUTABLE ...) in a toolchain file. For a toolkit without QtWebKit add "
        "-DNUV_WITH_HOOKS=OFF, for one without QtTest -DBUILD_TESTING=OFF.")
endfunction()

if(NUV_QT_MAJOR_VERSION EQUAL 6)
    if(NUV_WITH_HOOKS)
        message(FATAL_ERROR "NUV_WITH_HOOKS needs QtWebKit, which Qt 6 does not have: "
            "leave it OFF, or build with Qt 5 or 4.")
    endif()
    set(nuv_toolkit_version 6.4)
    find_package(Qt6 ${nuv_toolkit_version} REQUIRED COMPONENTS Core)
    nuv_name_module(Core Qt6::Core)
    if(BUILD_TESTING)
        find_package(Qt6 ${nuv_toolkit_version} REQUIRED COMPONENTS Test)
        # It would name the folders of each test, which then could not share precompiled headers.
        set_property(TARGET Qt6::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
        nuv_name_module(Test Qt6::Test)
    endif()
elseif(NUV_QT_MAJOR_VERSION EQUAL 5)
    set(nuv_toolkit_version 5.15)
    find_package(Qt5 ${nuv_toolkit_version} REQUIRED COMPONENTS Core)
    nuv_name_module(Core Qt5::Core)
    if(NUV_WITH_HOOKS)
        find_package(Qt5 ${nuv_toolkit_version} REQUIRED COMPONENTS WebKitWidgets)
        nuv_name_module(WebKit Qt5::WebKitWidgets)
    endif()
    if(BUILD_TESTING)
        find_package(Qt5 ${nuv_toolkit_version} REQUIRED COMPONENTS Test)
        nuv_name_module(Test Qt5::Test)
    endif()
elseif(NUV_QT_MAJOR_VERSION EQUAL 4)
    set(nuv_modules QtCore)
    if(NUV_WITH_HOOKS)
        list(APPEND nuv_modules QtGui QtNetwork QtWebKit)
    endif()
    if(BUILD_TESTING)
        list(APPEND nuv_modules QtTest)
    endif()
    # The search forgets a qmake that is of no use to it.
    set(nuv_qmake "${QT_QMAKE_EXECUTABLE}")
    find_package(Qt4 4.8 QUIET COMPONENTS ${nuv_modules})
    if(NOT Qt4_FOUND)
        if(QTVERSION)
            set(nuv_qmake "${QT_QMAKE_EXECUTABLE}")
        endif()
        nuv_refuse_qt4("${nuv_qmake}" ${nuv_modules})
    endif()
    message(STATUS "Found Qt ${QTVERSION}: ${QT_QMAKE_EXECUTABLE}")
    nuv_name_module(Core Qt4::QtCore)
    if(NUV_WITH_HOOKS)
        nuv_name_module(WebKit Qt4::QtWebKit Qt4::QtNetwork Qt4::QtGui)
    endif()
    if(BUILD_TESTING)
        nuv_name_module(Test Qt4::QtTest)
    endif()
else()
    message(FATAL_ERROR "NUV_QT_MAJOR_VERSION is ${NUV_QT_MAJOR_VERSION}; it must be 6, 5 or 4")
endif()
