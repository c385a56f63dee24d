# History entries and the sorted unique string collection.
list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/historyitem.cpp
    ${CMAKE_CURRENT_LIST_DIR}/uniqsortstrcollection.cpp
)
