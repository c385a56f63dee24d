# Bookmark archive and web layouts.
list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/archivefiles.cpp
    ${CMAKE_CURRENT_LIST_DIR}/book.cpp
    ${CMAKE_CURRENT_LIST_DIR}/bookediting.cpp
    ${CMAKE_CURRENT_LIST_DIR}/layout.cpp
    ${CMAKE_CURRENT_LIST_DIR}/layoutbook.cpp
    ${CMAKE_CURRENT_LIST_DIR}/layoutitem.cpp
    ${CMAKE_CURRENT_LIST_DIR}/thema.cpp
)
