# What `cmake --install` puts under the prefix: the two programs, the files they share
# (PREFIX/share/vantrell, found relative to PREFIX/bin), and what the desktop needs to
# know the browser: its .desktop file, icons, AppStream metainfo and manual pages.
include(GNUInstallDirs)

set(VANTRELL_SHARE_DIR ${CMAKE_INSTALL_DATADIR}/vantrell)
set(VANTRELL_DESKTOP_DIR ${PROJECT_SOURCE_DIR}/resources/desktop)

install(TARGETS vantrell-tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/resources/vtbooksamples.html
    ${PROJECT_SOURCE_DIR}/resources/sounds/notify.wav
    DESTINATION ${VANTRELL_SHARE_DIR})
# The search page comes with the search tool; a tree without it still installs.
install(FILES ${PROJECT_SOURCE_DIR}/resources/search.html
    DESTINATION ${VANTRELL_SHARE_DIR} OPTIONAL)
install(FILES ${PROJECT_SOURCE_DIR}/resources/man/vantrell-tool.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vantrell RENAME copyright)

if(VANTRELL_CORE_ONLY)
    return()
endif()

install(TARGETS vantrell RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/resources/man/vantrell.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${VANTRELL_DESKTOP_DIR}/vantrell.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${VANTRELL_DESKTOP_DIR}/org.vantrell.vantrell.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${VANTRELL_DESKTOP_DIR}/vantrell.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# The fixed-size icons are rendered from the one drawing when the tree is built.
find_program(RSVG_CONVERT rsvg-convert)
if(NOT RSVG_CONVERT)
    message(WARNING "rsvg-convert (librsvg2-bin) not found: the PNG icons are not installed")
    return()
endif()
set(VANTRELL_ICON_PNGS)
foreach(size 16 22 24 32 48 64 128 256)
    set(png ${CMAKE_BINARY_DIR}/icons/${size}x${size}/vantrell.png)
    add_custom_command(OUTPUT ${png}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}x${size}
        COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} ${VANTRELL_DESKTOP_DIR}/vantrell.svg -o ${png}
        DEPENDS ${VANTRELL_DESKTOP_DIR}/vantrell.svg
        VERBATIM)
    list(APPEND VANTRELL_ICON_PNGS ${png})
    install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
add_custom_target(vantrell-icons ALL DEPENDS ${VANTRELL_ICON_PNGS})
