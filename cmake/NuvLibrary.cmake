# The shared library out of its rooms, and its installation.

include(GenerateExportHeader)

add_library(nuvlaunchersupport SHARED)
add_library(NuvLauncherSupport::NuvLauncherSupport ALIAS nuvlaunchersupport)
set_target_properties(nuvlaunchersupport PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport.map")
target_link_libraries(nuvlaunchersupport
    PRIVATE nuv_options nuv_json nuv_settings nuv_config
    PUBLIC nuv::Core)
if(NUV_WITH_HOOKS)
    target_link_libraries(nuvlaunchersupport PRIVATE nuv_hooks nuv::WebKit)
endif()

# Visibility alone lets the template code of the standard library and the toolkit out, hence the map.
# The library is never unloaded: a settings format cannot be taken back, and the toolkit would call
# the callbacks of an unmapped one.
target_link_options(nuvlaunchersupport PRIVATE
    "LINKER:--version-script=${CMAKE_CURRENT_LIST_DIR}/nuvlaunchersupport.map"
    LINKER:-z,relro,-z,now,-z,nodelete)
if(NOT (NUV_SANITIZERS AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
    target_link_options(nuvlaunchersupport PRIVATE LINKER:--no-undefined)
endif()

generate_export_header(nuvlaunchersupport
    EXPORT_FILE_NAME "${PROJECT_BINARY_DIR}/include/nuvlaunchersupport_export.h")
target_include_directories(nuvlaunchersupport INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/nuvlaunchersupport>)

# The public headers, and the classes that each of them declares. They are installed side by side,
# with a forwarding header in the name of every class.
set(nuv_public_headers
    config/appconfig.h config/webappsettings.h "${PROJECT_BINARY_DIR}/include/nuvlaunchersupport_export.h")
set(nuv_appconfig_classes AppConfig)
set(nuv_webappsettings_classes WebAppSettings)
if(NUV_WITH_HOOKS)
    list(APPEND nuv_public_headers hooks/zarexextbase.h hooks/networkaccessmanager.h)
    set(nuv_zarexextbase_classes ZarexExtBase)
    set(nuv_networkaccessmanager_classes NetworkAccessManager NetworkAccessManagerFactory)
endif()

set(nuv_forwarding_headers "")
foreach(header IN LISTS nuv_public_headers)
    get_filename_component(name "${header}" NAME_WE)
    foreach(class IN LISTS nuv_${name}_classes)
        set(forwarding "${PROJECT_BINARY_DIR}/forwarding/${class}")
        file(GENERATE OUTPUT "${forwarding}" CONTENT "#include \"${name}.h\"\n")
        list(APPEND nuv_forwarding_headers "${forwarding}")
    endforeach()
endforeach()

install(TARGETS nuvlaunchersupport
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES ${nuv_public_headers} ${nuv_forwarding_headers}
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/nuvlaunchersupport"
    COMPONENT development)
