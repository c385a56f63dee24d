include(${CMAKE_CURRENT_LIST_DIR}/feeds.cmake)
list(APPEND VANTRELL_UI_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/busyindicator.cpp
    ${CMAKE_CURRENT_LIST_DIR}/frmbrowser.cpp
    ${CMAKE_CURRENT_LIST_DIR}/frmbrowser_commands.cpp
    ${CMAKE_CURRENT_LIST_DIR}/infobar.cpp
    ${CMAKE_CURRENT_LIST_DIR}/lockicon.cpp
)
