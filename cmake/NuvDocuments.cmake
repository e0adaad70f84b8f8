# SPDX-License-Identifier: MIT
# The documents for users of an installation, and the examples. They are to each other as in the tree, so
# that their links lead somewhere. A link to something that is not installed, such as a source file or a
# page for contributors, becomes plain words.

include(NuvGuides)

set(nuv_document_folders examples)
set(nuv_documents ${nuv_guides} README.md CHANGELOG.md SECURITY.md)
file(GLOB nuv_document_files RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/docs/pictures/*.png")
list(APPEND nuv_document_files LICENSE docs/AppsConfig.schema.json)

# nuv_is_installed(RESULT PATH): whether PATH, given from the root of the tree, is among the documents.
function(nuv_is_installed result path)
    set(${result} OFF PARENT_SCOPE)
    foreach(installed IN LISTS nuv_documents nuv_document_files nuv_document_folders)
        string(FIND "${path}/" "${installed}/" place)
        if(place EQUAL 0)
            set(${result} ON PARENT_SCOPE)
        endif()
    endforeach()
endfunction()

# nuv_without_dead_links(RESULT PAGE): the text of PAGE as it is installed.
function(nuv_without_dead_links result page)
    get_filename_component(folder "/${page}" DIRECTORY)
    file(READ "${PROJECT_SOURCE_DIR}/${page}" rest)
    set(text "")
    while(rest MATCHES "\\[([^]\n]+)\\]\\(([^)# \n]+)(#[^) \n]*)?\\)")
        set(link "${CMAKE_MATCH_0}")
        set(name "${CMAKE_MATCH_1}")
        set(target "${CMAKE_MATCH_2}")
        string(FIND "${rest}" "${link}" place)
        string(SUBSTRING "${rest}" 0 ${place} before)
        string(LENGTH "${before}${link}" place)
        string(SUBSTRING "${rest}" ${place} -1 rest)
        get_filename_component(path "${target}" ABSOLUTE BASE_DIR "${folder}")
        string(SUBSTRING "${path}" 1 -1 path)
        nuv_is_installed(is_installed "${path}")
        if(NOT is_installed AND NOT target MATCHES "^[a-z]+:")
            set(link "${name}")
        endif()
        string(APPEND text "${before}${link}")
    endwhile()
    set(${result} "${text}${rest}" PARENT_SCOPE)
endfunction()

set(nuv_documents_folder "${PROJECT_BINARY_DIR}/documents")
file(REMOVE_RECURSE "${nuv_documents_folder}")
foreach(page IN LISTS nuv_documents)
    nuv_without_dead_links(text "${page}")
    file(WRITE "${nuv_documents_folder}/${page}" "${text}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${page}")
endforeach()

install(DIRECTORY "${nuv_documents_folder}/"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)
foreach(path IN LISTS nuv_document_files nuv_document_folders)
    get_filename_component(folder "${path}" DIRECTORY)
    if(IS_DIRECTORY "${PROJECT_SOURCE_DIR}/${path}")
        install(DIRECTORY "${path}" DESTINATION "${CMAKE_INSTALL_DOCDIR}/${folder}"
            COMPONENT development USE_SOURCE_PERMISSIONS)
    else()
        install(FILES "${path}" DESTINATION "${CMAKE_INSTALL_DOCDIR}/${folder}"
            COMPONENT development)
    endif()
endforeach()
