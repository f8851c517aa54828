# The Debian package: `cpack -G DEB` in a build configured with CMAKE_INSTALL_PREFIX=/usr
# (scripts/package does both). The desktop database, MIME database and icon cache are refreshed
# by the system's own triggers.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessary)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
    "Tessary edits COG script files: syntax colouring, a tree of the symbols, messages and comments of\n"
    "a script, a reference of COG verbs, typing aids and COG templates. The package also holds\n"
    "tessary-cli, which runs the same COG rules from the command line.")
set(CPACK_PACKAGE_VENDOR "Tessary")
set(CPACK_PACKAGE_CONTACT "Tessary developers <tessary@users.noreply.invalid>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION editors)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "libc6, libstdc++6, libqt6core6 (>= 6.4), libqt6gui6 (>= 6.4), libqt6widgets6 (>= 6.4), \
libqt6printsupport6 (>= 6.4), libqt6network6 (>= 6.4), libqscintilla2-qt6-15")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "shared-mime-info, desktop-file-utils, hicolor-icon-theme")
set(CPACK_STRIP_FILES ON)
include(CPack)
