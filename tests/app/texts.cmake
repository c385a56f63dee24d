# Tests of the user-interface text table.
vantrell_add_test(uiTextsTest ${CMAKE_CURRENT_LIST_DIR}/uitexts_test.cpp)
