# SPDX-License-Identifier: MIT
# The pages of docs that are for users, by their paths from the root of the tree. Those for contributors
# stay in it.
set(nuv_contributors_pages architecture building performance reliability)

file(GLOB nuv_guides RELATIVE "${PROJECT_SOURCE_DIR}" CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/docs/*.md")
foreach(page IN LISTS nuv_contributors_pages)
    list(REMOVE_ITEM nuv_guides "docs/${page}.md")
endforeach()
