list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/recordcodec.cpp
    ${CMAKE_CURRENT_LIST_DIR}/recordfile.cpp
)
list(APPEND VANTRELL_UI_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/downloads.cpp
    ${CMAKE_CURRENT_LIST_DIR}/generatedpages.cpp
    ${CMAKE_CURRENT_LIST_DIR}/pageview.cpp
    ${CMAKE_CURRENT_LIST_DIR}/webenginesetup.cpp
    ${CMAKE_CURRENT_LIST_DIR}/webpage.cpp
)
