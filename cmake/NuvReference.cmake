# SPDX-License-Identifier: MIT
# The target "reference": the reference of the programming interface with the guides, as HTML, and as Qt
# help where the generator of that is installed. It is there where Doxygen is, and fails where the comments
# of the public headers leave something out, or a link leads nowhere.

find_program(NUV_DOXYGEN doxygen DOC "Doxygen, for the target \"reference\"")
find_program(NUV_QHELPGENERATOR qhelpgenerator HINTS /usr/lib/qt5/bin
    DOC "Qt's generator of help files, for the target \"reference\"")
find_path(NUV_QT_TAGS qtcore/qtcore.tags HINTS /usr/share/qt5/doc
    DOC "The folder with the tag files of Qt's documentation")
mark_as_advanced(NUV_DOXYGEN NUV_QHELPGENERATOR NUV_QT_TAGS)
if(NOT NUV_DOXYGEN)
    return()
endif()

# nuv_quoted(RESULT FILE...): the files, as Doxygen wants a list.
function(nuv_quoted result)
    list(JOIN ARGN "\" \"" files)
    set(${result} "\"${files}\"" PARENT_SCOPE)
endfunction()

set(nuv_reference_folder "${PROJECT_BINARY_DIR}/reference")
set(nuv_described_headers ${nuv_public_headers})
list(REMOVE_ITEM nuv_described_headers "${nuv_export_header}")
nuv_quoted(nuv_reference_headers ${nuv_described_headers})
include(NuvGuides)
list(TRANSFORM nuv_guides PREPEND "${PROJECT_SOURCE_DIR}/")
nuv_quoted(nuv_reference_guides ${nuv_guides})
list(JOIN nuv_contributors_pages "," nuv_contributors)
set(nuv_reference_help NO)
if(NUV_QHELPGENERATOR)
    set(nuv_reference_help YES)
else()
    set(NUV_QHELPGENERATOR "")
endif()

# The links lead to the pages that the toolkit's makers have of it. QtWebKit has no tag files.
set(nuv_reference_tags "")
if(NUV_QT_TAGS)
    foreach(module core gui network widgets)
        string(APPEND nuv_reference_tags
            " \"${NUV_QT_TAGS}/qt${module}/qt${module}.tags=https://doc.qt.io/qt-5/\"")
    endforeach()
endif()
configure_file("${PROJECT_SOURCE_DIR}/docs/api/Doxyfile.in" "${PROJECT_BINARY_DIR}/Doxyfile" @ONLY)

add_custom_target(reference
    COMMAND "${CMAKE_COMMAND}" -E rm -rf "${nuv_reference_folder}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${nuv_reference_folder}"
    COMMAND "${CMAKE_COMMAND}" -E env QT_QPA_PLATFORM=offscreen "${NUV_DOXYGEN}"
        "${PROJECT_BINARY_DIR}/Doxyfile"
    COMMAND "${PROJECT_SOURCE_DIR}/docs/api/check-reference" "${nuv_reference_folder}/html" ${nuv_guides}
    COMMENT "Making the reference in ${nuv_reference_folder}/html" VERBATIM)
