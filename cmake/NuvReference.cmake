# SPDX-License-Identifier: MIT
# The target "reference": the reference of the programming interface, as HTML, where Doxygen is
# installed. It fails where the comments of the public headers leave something out.

find_program(NUV_DOXYGEN doxygen DOC "Doxygen, for the target \"reference\"")
mark_as_advanced(NUV_DOXYGEN)
if(NOT NUV_DOXYGEN)
    return()
endif()

set(nuv_reference_folder "${PROJECT_BINARY_DIR}/reference")
set(nuv_described_headers ${nuv_public_headers})
list(REMOVE_ITEM nuv_described_headers "${nuv_export_header}")
list(JOIN nuv_described_headers "\" \"" nuv_reference_headers)
string(PREPEND nuv_reference_headers "\"")
string(APPEND nuv_reference_headers "\"")
configure_file("${PROJECT_SOURCE_DIR}/docs/api/Doxyfile.in" "${PROJECT_BINARY_DIR}/Doxyfile" @ONLY)

add_custom_target(reference
    COMMAND "${CMAKE_COMMAND}" -E rm -rf "${nuv_reference_folder}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${nuv_reference_folder}"
    COMMAND "${NUV_DOXYGEN}" "${PROJECT_BINARY_DIR}/Doxyfile"
    COMMENT "Making the reference in ${nuv_reference_folder}/html" VERBATIM)
