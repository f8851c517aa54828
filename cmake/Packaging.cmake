# The Debian package: `cpack -G DEB` in a build configured with CMAKE_INSTALL_PREFIX=/usr
# (scripts/package does both). The desktop database, MIME database and icon cache are refreshed
# by the system's own triggers; the dependencies are worked out by dpkg-shlibdeps from the
# libraries the programs link.

# The manual pages, compressed as Debian keeps them, and the copyright file.
set(man_pages "")
foreach(page tessary tessary-cli)
  set(out "${CMAKE_BINARY_DIR}/man/${page}.1.gz")
  add_custom_command(OUTPUT "${out}"
    COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/man"
    COMMAND gzip -9nc "${CMAKE_SOURCE_DIR}/docs/man/${page}.1" > "${out}"
    DEPENDS "${CMAKE_SOURCE_DIR}/docs/man/${page}.1" VERBATIM)
  list(APPEND man_pages "${out}")
endforeach()
add_custom_target(tessary_man ALL DEPENDS ${man_pages})
install(FILES ${man_pages} DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${CMAKE_SOURCE_DIR}/docs/copyright" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/tessary")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessary)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
# One quoted string with its line breaks: several strings would be a list, joined with ";".
set(CPACK_PACKAGE_DESCRIPTION "Tessary edits COG script files: syntax colouring, a tree of the symbols, \
messages and comments
of a script, a reference of COG verbs, typing aids and COG templates. The package also holds
tessary-cli, which runs the same COG rules from the command line.")
set(CPACK_PACKAGE_VENDOR "Tessary")
set(CPACK_PACKAGE_CONTACT "Tessary developers <tessary@users.noreply.invalid>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION editors)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "shared-mime-info, desktop-file-utils, hicolor-icon-theme")
set(CPACK_STRIP_FILES ON)
include(CPack)
