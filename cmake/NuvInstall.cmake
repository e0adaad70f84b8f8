# SPDX-License-Identifier: MIT
# What is installed, in components: runtime (the library), development (what compiling and linking with
# it needs, and the documents), tools (nuv-apps-config) and launcher (the reference launcher). Nothing
# of it but the file for pkg-config knows where it is: an installation may be moved as a whole. Where
# CMAKE_INSTALL_LIBDIR or CMAKE_INSTALL_INCLUDEDIR is absolute, it may not.

include(CMakePackageConfigHelpers)

set(nuv_cmake_folder "${CMAKE_INSTALL_LIBDIR}/cmake/NuvLauncherSupport")
set(nuv_pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
set(nuv_data_folder "${CMAKE_INSTALL_DATADIR}/nuvlaunchersupport")
set(nuv_has_absolute_folders OFF)
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    set(nuv_has_absolute_folders ON)
endif()

# nuv_find_way(RESULT FROM TO): the way from one folder of the installation to another one, both as
# GNUInstallDirs has them, with a slash at its begin. Only from the prefix on is there such a way.
function(nuv_find_way result from to)
    file(RELATIVE_PATH way "/${from}" "/${to}")
    string(REGEX REPLACE "/$" "" way "${way}")
    set(${result} "/${way}" PARENT_SCOPE)
endfunction()

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

# The file for pkg-config. It names the prefix that the library is installed below, like those of other
# libraries: pkg-config 0.29 puts its sysroot twice before folders that are given from where the file is.
# That prefix is only known when the library is installed.

string(REPLACE ";" " " nuv_modules "${nuv_modules}")
set(nuv_pc_prefix "@nuv_prefix@")
if(NUV_MOVABLE_PKGCONFIG)
    if(nuv_has_absolute_folders)
        message(FATAL_ERROR "NUV_MOVABLE_PKGCONFIG needs CMAKE_INSTALL_LIBDIR and "
            "CMAKE_INSTALL_INCLUDEDIR from the prefix, not as ${CMAKE_INSTALL_LIBDIR} and "
            "${CMAKE_INSTALL_INCLUDEDIR}.")
    endif()
    nuv_find_way(nuv_way "${nuv_pkgconfig_folder}" "")
    set(nuv_pc_prefix "\${pcfiledir}${nuv_way}")
endif()
foreach(folder INCLUDEDIR LIBDIR)
    set(nuv_pc_${folder} "\${prefix}/${CMAKE_INSTALL_${folder}}")
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
        set(nuv_pc_${folder} "${CMAKE_INSTALL_${folder}}")
    endif()
endforeach()
set(nuv_pc_file "${PROJECT_BINARY_DIR}/nuvlaunchersupport.pc")
configure_file("${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport.pc.in" "${nuv_pc_file}.in" @ONLY)
install(CODE "
    get_filename_component(nuv_prefix \"\${CMAKE_INSTALL_PREFIX}\" ABSOLUTE)
    configure_file(\"${nuv_pc_file}.in\" \"${nuv_pc_file}\" @ONLY)" COMPONENT development)
install(FILES "${nuv_pc_file}" DESTINATION "${nuv_pkgconfig_folder}" COMPONENT development)

# The file for projects of qmake, which gives its folders from where it is itself.

set(nuv_pri_folder "${CMAKE_INSTALL_LIBDIR}/nuvlaunchersupport")
if(nuv_has_absolute_folders)
    set(nuv_pri_INCLUDEDIR "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
    set(nuv_pri_LIBDIR "${CMAKE_INSTALL_FULL_LIBDIR}")
else()
    foreach(folder INCLUDEDIR LIBDIR)
        nuv_find_way(nuv_way "${nuv_pri_folder}" "${CMAKE_INSTALL_${folder}}")
        set(nuv_pri_${folder} "$$PWD${nuv_way}")
    endforeach()
endif()
set(nuv_pri_modules "")
if(NUV_WITH_HOOKS)
    set(nuv_pri_modules webkitwidgets)
    if(NUV_QT_MAJOR_VERSION EQUAL 4)
        set(nuv_pri_modules "webkit network")
    endif()
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport.pri.in"
    "${PROJECT_BINARY_DIR}/nuvlaunchersupport.pri" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/nuvlaunchersupport.pri"
    DESTINATION "${nuv_pri_folder}" COMPONENT development)

include(NuvDocuments)

# The programs. What belongs to nuv-apps-config alone is installed where it is built.

if(NUV_BUILD_TOOLS)
    install(FILES docs/AppsConfig.schema.json
        DESTINATION "${nuv_data_folder}" COMPONENT tools)
endif()
if(NUV_BUILD_EXAMPLES)
    set(nuv_launcher_rpath "${CMAKE_INSTALL_FULL_LIBDIR}")
    if(NOT nuv_has_absolute_folders AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}")
        nuv_find_way(nuv_way "${CMAKE_INSTALL_BINDIR}" "${CMAKE_INSTALL_LIBDIR}")
        set(nuv_launcher_rpath "$ORIGIN${nuv_way}")
    endif()
    set_target_properties(nuv-launcher PROPERTIES INSTALL_RPATH "${nuv_launcher_rpath}")
    install(TARGETS nuv-launcher DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT launcher)
    install(FILES examples/launcher/nuv-launcher.1
        DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT launcher)
    install(FILES examples/launcher/completions/nuv-launcher.bash RENAME nuv-launcher
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT launcher)
    install(FILES examples/launcher/completions/_nuv-launcher
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" COMPONENT launcher)
    install(FILES examples/launcher/completions/nuv-launcher.fish
        DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT launcher)
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
