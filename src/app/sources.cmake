list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/appinfo.cpp
    ${CMAKE_CURRENT_LIST_DIR}/clock.cpp
    ${CMAKE_CURRENT_LIST_DIR}/commandline.cpp
    ${CMAKE_CURRENT_LIST_DIR}/uitexts.cpp
)
# Commands of vantrell-tool; each subsystem's command lives in its own file.
list(APPEND VANTRELL_TOOL_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/tool/toolcontext.cpp
    ${CMAKE_CURRENT_LIST_DIR}/tool/prefscommand.cpp
    ${CMAKE_CURRENT_LIST_DIR}/tool/bookmarkscommand.cpp
    ${CMAKE_CURRENT_LIST_DIR}/tool/layoutscommand.cpp
    ${CMAKE_CURRENT_LIST_DIR}/tool/feedcommand.cpp
)
list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/singleinstance.cpp
    ${CMAKE_CURRENT_LIST_DIR}/quitsignals.cpp
)
list(APPEND VANTRELL_UI_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/appinit.cpp
)
