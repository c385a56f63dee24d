# The Debian package (cpack -G DEB, or scripts/package.sh). The libraries it needs come
# from dpkg-shlibdeps; the platform plugins that open a window are loaded at run time,
# not linked, so they are named here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantrell)
set(CPACK_PACKAGE_VENDOR Vantrell)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "web browser that shows many pages at once")
set(CPACK_PACKAGE_DESCRIPTION
    "Vantrell keeps every page in its own browser window inside one main frame,\nmirrored in a tab strip. Windows are tiled or cascaded, pages open windows only\nas far as the popup policy allows, feeds are shown as pages of their own, and\nbookmarks and window arrangements are kept in archives of their own.")
set(CPACK_PACKAGE_CONTACT "Vantrell developers <vantrell@example.org>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
