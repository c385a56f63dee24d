list(APPEND VANTRELL_CORE_SOURCES
)
list(APPEND VANTRELL_UI_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/appicon.cpp
    ${CMAKE_CURRENT_LIST_DIR}/framemenus.cpp
    ${CMAKE_CURRENT_LIST_DIR}/mailprogram.cpp
    ${CMAKE_CURRENT_LIST_DIR}/openalllinks.cpp
    ${CMAKE_CURRENT_LIST_DIR}/windowsets.cpp
    ${CMAKE_CURRENT_LIST_DIR}/statuspanels.cpp
    ${CMAKE_CURRENT_LIST_DIR}/mdiform1.cpp
    ${CMAKE_CURRENT_LIST_DIR}/mdiform1_arrange.cpp
    ${CMAKE_CURRENT_LIST_DIR}/mdiform1_registry.cpp
    ${CMAKE_CURRENT_LIST_DIR}/tabstrip.cpp
    ${CMAKE_CURRENT_LIST_DIR}/twips.cpp
)
