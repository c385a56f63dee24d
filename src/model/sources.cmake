include(${CMAKE_CURRENT_LIST_DIR}/archive.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/collections.cmake)
