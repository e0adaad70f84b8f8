# SPDX-License-Identifier: MIT
# What is installed, in components: runtime (the library), development (what compiling and linking with
# it needs, and the documents), tools (nuv-apps-config) and launcher (the reference launcher). Nothing
# of it knows where it lies: an installation may be moved as a whole.

include(CMakePackageConfigHelpers)

set(nuv_cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/NuvLauncherSupport")
set(nuv_pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
set(nuv_data_folder "${CMAKE_INSTALL_DATADIR}/nuvlaunchersupport")

# The library and its headers.

set_target_properties(nuvlaunchersupport PROPERTIES EXPORT_NAME NuvLauncherSupport)
install(TARGETS nuvlaunchersupport EXPORT NuvLauncherSupportTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES ${nuv_public_headers} ${nuv_forwarding_headers}
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/nuvlaunchersupport"
    COMPONENT development)

# The CMake package.

if(NUV_QT_MAJOR_VERSION GREATER_EQUAL 5)
    string(REPLACE "::" "" nuv_modules "${nuv_toolkit_modules}")
    set(nuv_find_toolkit "")
    foreach(module IN LISTS nuv_modules)
        string(APPEND nuv_find_toolkit "find_dependency(${module} ${nuv_toolkit_version})\n")
    endforeach()
else()
    string(REPLACE "Qt4::" "" nuv_modules "${nuv_toolkit_modules}")
    string(REPLACE ";" " " nuv_components "${nuv_modules}")
    set(nuv_find_toolkit "find_dependency(Qt4 4.8 COMPONENTS ${nuv_components})\n")
endif()
configure_package_config_file(
    "${CMAKE_CURRENT_LIST_DIR}/NuvLauncherSupportConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/NuvLauncherSupportConfig.cmake"
    INSTALL_DESTINATION "${nuv_cmake_folder}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/NuvLauncherSupportConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/NuvLauncherSupportConfig.cmake"
    "${PROJECT_BINARY_DIR}/NuvLauncherSupportConfigVersion.cmake"
    DESTINATION "${nuv_cmake_folder}" COMPONENT development)
install(EXPORT NuvLauncherSupportTargets NAMESPACE NuvLauncherSupport::
    DESTINATION "${nuv_cmake_folder}" COMPONENT development)

# The file for pkg-config. Its folders are given from where it lies itself, so they are only known when
# they are given from the prefix.

foreach(folder INCLUDEDIR LIBDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
        message(FATAL_ERROR "CMAKE_INSTALL_${folder} must be given from the prefix, not as "
            "${CMAKE_INSTALL_${folder}}")
    endif()
endforeach()
file(RELATIVE_PATH nuv_way_to_prefix "/${nuv_pkgconfig_folder}" "/")
string(REGEX REPLACE "/$" "" nuv_way_to_prefix "${nuv_way_to_prefix}")
string(REPLACE ";" " " nuv_modules "${nuv_modules}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport.pc.in"
    "${PROJECT_BINARY_DIR}/nuvlaunchersupport.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/nuvlaunchersupport.pc"
    DESTINATION "${nuv_pkgconfig_folder}" COMPONENT development)

include(NuvDocuments)

# The programs. What belongs to nuv-apps-config alone is installed where it is built.

if(NUV_BUILD_TOOLS)
    install(FILES docs/AppsConfig.schema.json
        DESTINATION "${nuv_data_folder}" COMPONENT tools)
endif()
if(NUV_BUILD_EXAMPLES)
    file(RELATIVE_PATH nuv_way_to_library
        "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(nuv-launcher PROPERTIES INSTALL_RPATH "$ORIGIN/${nuv_way_to_library}")
    install(TARGETS nuv-launcher DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT launcher)
    install(FILES examples/launcher/nuv-launcher.1
        DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT launcher)
    install(DIRECTORY examples/launcher/pages
        DESTINATION "${nuv_data_folder}/launcher" COMPONENT launcher)
    # The unit is an example beside the others: which screen it is for, a device has to say.
    install(FILES examples/launcher/AppsConfig.json "examples/launcher/nuv-launcher@.service"
        DESTINATION "${nuv_data_folder}/launcher" COMPONENT launcher)
endif()

# Removing it again.

if(nuv_alone)
    add_custom_target(uninstall
        COMMAND "${CMAKE_COMMAND}" "-DBUILD=${PROJECT_BINARY_DIR}"
            -P "${CMAKE_CURRENT_LIST_DIR}/uninstall.cmake"
        COMMENT "Removing what was installed from here" VERBATIM)
endif()
