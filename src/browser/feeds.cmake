# Feed parsing and the generated feed page (headless).
list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/feed.h
    ${CMAKE_CURRENT_LIST_DIR}/feeddocument.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feeddocument.h
    ${CMAKE_CURRENT_LIST_DIR}/feedfetcher.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedfetcher.h
    ${CMAKE_CURRENT_LIST_DIR}/feedhtmlcleaner.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedhtmlcleaner.h
    ${CMAKE_CURRENT_LIST_DIR}/feedhtmlrules.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedhtmlrules.h
    ${CMAKE_CURRENT_LIST_DIR}/feedhtmlscan.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedhtmlscan.h
    ${CMAKE_CURRENT_LIST_DIR}/feedmark.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedmark.h
    ${CMAKE_CURRENT_LIST_DIR}/feedpage.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedpage.h
    ${CMAKE_CURRENT_LIST_DIR}/feedparser.cpp
    ${CMAKE_CURRENT_LIST_DIR}/feedparser.h
)
