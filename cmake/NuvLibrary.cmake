# SPDX-License-Identifier: MIT
# The shared library out of its rooms.

add_library(nuvlaunchersupport SHARED)
add_library(NuvLauncherSupport::NuvLauncherSupport ALIAS nuvlaunchersupport)
set_target_properties(nuvlaunchersupport PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport.map")
target_link_libraries(nuvlaunchersupport
    PRIVATE nuv_options nuv_json nuv_settings nuv_config
    PUBLIC ${nuv_toolkit_modules})
if(NUV_WITH_HOOKS)
    target_link_libraries(nuvlaunchersupport PRIVATE nuv_hooks)
endif()

# Visibility alone lets the template code of the standard library and the toolkit out, hence the map.
# The library is never unloaded: a settings format cannot be taken back, and the toolkit would call
# the callbacks of an unmapped one.
target_link_options(nuvlaunchersupport PRIVATE
    "LINKER:--version-script=${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport.map"
    LINKER:-z,nodelete)
if(NOT (NUV_SANITIZERS AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
    target_link_options(nuvlaunchersupport PRIVATE LINKER:--no-undefined)
endif()
