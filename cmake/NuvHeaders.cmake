# SPDX-License-Identifier: MIT
# The public headers: one folder that holds them side by side, with a forwarding header in the name of
# every class. The build has such a folder, too, so a project that adds this one as a subdirectory
# includes them by the names that it would use for an installation.

include(GenerateExportHeader)

set(nuv_flat_folder "${PROJECT_BINARY_DIR}/include/nuvlaunchersupport")
set(nuv_export_header "${PROJECT_BINARY_DIR}/include/nuvlaunchersupport_export.h")
generate_export_header(nuvlaunchersupport EXPORT_FILE_NAME "${nuv_export_header}")
set(nuv_version_header "${PROJECT_BINARY_DIR}/include/nuvlaunchersupport_version.h")
configure_file("${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport_version.h.in" "${nuv_version_header}" @ONLY)

# nuv_add_public_header(PATH CLASS...): a header of the interface, and the classes that it declares.
set(nuv_public_headers "${nuv_export_header}" "${nuv_version_header}")
set(nuv_forwarding_headers "")
function(nuv_add_public_header path)
    get_filename_component(name "${path}" NAME)
    file(GENERATE OUTPUT "${nuv_flat_folder}/${name}"
        CONTENT "#include \"${PROJECT_SOURCE_DIR}/${path}\"\n")
    foreach(class IN LISTS ARGN)
        file(GENERATE OUTPUT "${nuv_flat_folder}/${class}" CONTENT "#include \"${name}\"\n")
        list(APPEND nuv_forwarding_headers "${nuv_flat_folder}/${class}")
    endforeach()
    set(nuv_public_headers ${nuv_public_headers} "${PROJECT_SOURCE_DIR}/${path}" PARENT_SCOPE)
    set(nuv_forwarding_headers ${nuv_forwarding_headers} PARENT_SCOPE)
endfunction()

nuv_add_public_header(config/appconfig.h AppConfig)
nuv_add_public_header(config/webappsettings.h WebAppSettings)
if(NUV_WITH_HOOKS)
    nuv_add_public_header(hooks/zarexextbase.h ZarexExtBase)
    nuv_add_public_header(hooks/networkaccessmanager.h
        NetworkAccessManager NetworkAccessManagerFactory)
endif()

target_include_directories(nuvlaunchersupport INTERFACE
    "$<BUILD_INTERFACE:${nuv_flat_folder}>"
    "$<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/nuvlaunchersupport>")
