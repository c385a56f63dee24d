include(${CMAKE_CURRENT_LIST_DIR}/feeds.cmake)
list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/feedlist.cpp
)
list(APPEND VANTRELL_UI_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/browsertoolbar.cpp
    ${CMAKE_CURRENT_LIST_DIR}/drivemenu.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedloader.cpp
    ${CMAKE_CURRENT_LIST_DIR}/findbar.cpp
    ${CMAKE_CURRENT_LIST_DIR}/networkdrives.cpp
    ${CMAKE_CURRENT_LIST_DIR}/toolbaricons.cpp
    ${CMAKE_CURRENT_LIST_DIR}/busyindicator.cpp
    ${CMAKE_CURRENT_LIST_DIR}/frmbrowser.cpp
    ${CMAKE_CURRENT_LIST_DIR}/frmbrowser_commands.cpp
    ${CMAKE_CURRENT_LIST_DIR}/infobar.cpp
    ${CMAKE_CURRENT_LIST_DIR}/lockicon.cpp
)
