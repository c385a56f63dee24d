# Tests of a browser window's toolbar commands, find bar and feeds in the window.
vantrell_add_test(browserToolbarTest ${CMAKE_CURRENT_LIST_DIR}/toolbar_test.cpp UI)
vantrell_add_test(feedListTest ${CMAKE_CURRENT_LIST_DIR}/feedlist_test.cpp)
