# SPDX-License-Identifier: MIT
# cmake -DBUILD=FOLDER -P uninstall.cmake: removes the files that the last installation from the build
# FOLDER put somewhere, as its manifests list them, and the folders of this project that are left
# empty. DESTDIR counts as it did for the installation.

file(GLOB manifests "${BUILD}/install_manifest*.txt")
if(NOT manifests)
    message(FATAL_ERROR "Nothing was installed from ${BUILD}")
endif()

# remove_empty(FOLDER): an empty folder, and those above it that become empty, as far as they are ours.
function(remove_empty folder)
    while(folder MATCHES "[Nn]uv-?[Ll]auncher")
        file(GLOB left "${folder}/*")
        if(left OR NOT IS_DIRECTORY "${folder}")
            return()
        endif()
        file(REMOVE_RECURSE "${folder}")
        get_filename_component(folder "${folder}" DIRECTORY)
    endwhile()
endfunction()

set(folders "")
foreach(manifest IN LISTS manifests)
    file(STRINGS "${manifest}" files)
    foreach(file IN LISTS files)
        set(path "$ENV{DESTDIR}${file}")
        if(EXISTS "${path}" OR IS_SYMLINK "${path}")
            message(STATUS "Removing ${path}")
            file(REMOVE "${path}")
        endif()
        get_filename_component(folder "${path}" DIRECTORY)
        list(APPEND folders "${folder}")
    endforeach()
    file(REMOVE "${manifest}")
endforeach()

list(REMOVE_DUPLICATES folders)
foreach(folder IN LISTS folders)
    remove_empty("${folder}")
endforeach()
