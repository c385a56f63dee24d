# Tests of feed parsing and the feed page.
vantrell_add_test(feedPageTest ${CMAKE_CURRENT_LIST_DIR}/feedpage_test.cpp)
vantrell_add_test(feedParserTest ${CMAKE_CURRENT_LIST_DIR}/feedparser_test.cpp)
vantrell_add_test(feedHtmlCleanerTest ${CMAKE_CURRENT_LIST_DIR}/feedhtmlcleaner_test.cpp)
vantrell_add_test(feedMarkTest ${CMAKE_CURRENT_LIST_DIR}/feedmark_test.cpp)
vantrell_add_test(feedFetchTest ${CMAKE_CURRENT_LIST_DIR}/feedfetch_test.cpp)
