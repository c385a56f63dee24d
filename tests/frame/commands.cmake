# Tests of the frame's commands: open all links, menus, status bar panels.
vantrell_add_test(openAllLinksTest ${CMAKE_CURRENT_LIST_DIR}/openalllinks_test.cpp UI)
