# Tests of history entries and the sorted unique string collection.
vantrell_add_test(collectionsTest ${CMAKE_CURRENT_LIST_DIR}/collections_test.cpp)
