# The Debian package (cpack -G DEB, or scripts/package.sh). The libraries it needs come
# from dpkg-shlibdeps; the two named here are loaded at run time, not linked: the
# engine's helper process and the platform plugins that open a window.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantrell)
set(CPACK_PACKAGE_VENDOR Vantrell)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "web browser that shows many pages at once")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "web browser that shows many pages at once\n Vantrell keeps every page in its own browser window inside one main frame,\n mirrored in a tab strip. Windows are tiled or cascaded, pages open windows only\n as far as the popup policy allows, feeds are shown as pages of their own, and\n bookmarks and window arrangements are kept in archives of their own.")
set(CPACK_PACKAGE_CONTACT "Vantrell developers <vantrell@example.org>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6webenginecore6-bin, qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
