# Import and export of the bookmark archive.
list(APPEND VANTRELL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/htmlsource.cpp
    ${CMAKE_CURRENT_LIST_DIR}/htmltext.cpp
    ${CMAKE_CURRENT_LIST_DIR}/netscapeexport.cpp
    ${CMAKE_CURRENT_LIST_DIR}/netscapeimport.cpp
    ${CMAKE_CURRENT_LIST_DIR}/parsearena.cpp
    ${CMAKE_CURRENT_LIST_DIR}/textexports.cpp
    ${CMAKE_CURRENT_LIST_DIR}/utf8writer.cpp
    ${CMAKE_CURRENT_LIST_DIR}/xmlexports.cpp
)
list(APPEND VANTRELL_UI_SOURCES
)
# The sample archive that seeds an empty archive lies beside the program.
configure_file(${PROJECT_SOURCE_DIR}/resources/vtbooksamples.html ${CMAKE_BINARY_DIR}/src/vtbooksamples.html COPYONLY)
