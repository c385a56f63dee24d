# Tests of the bookmark archive and web layouts.
vantrell_add_test(bookTest ${CMAKE_CURRENT_LIST_DIR}/book_test.cpp)
vantrell_add_test(bookEditingTest ${CMAKE_CURRENT_LIST_DIR}/bookediting_test.cpp)
vantrell_add_test(layoutTest ${CMAKE_CURRENT_LIST_DIR}/layout_test.cpp)
