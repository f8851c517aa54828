# Debian ships QScintilla for Qt 6 without a CMake or pkg-config file: find the header and the
# library beside Qt's own and wrap them in an imported target.
get_target_property(_qt_core_include Qt6::Core INTERFACE_INCLUDE_DIRECTORIES)
find_path(QSCINTILLA_INCLUDE_DIR Qsci/qsciscintilla.h
          HINTS "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_HEADERS}" ${_qt_core_include}
          PATH_SUFFIXES qt6)
find_library(QSCINTILLA_LIBRARY qscintilla2_qt6 HINTS "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_LIBS}")
if(NOT QSCINTILLA_INCLUDE_DIR OR NOT QSCINTILLA_LIBRARY)
  message(FATAL_ERROR "QScintilla for Qt 6 not found (Debian package libqscintilla2-qt6-dev)")
endif()
add_library(QScintilla::QScintilla UNKNOWN IMPORTED)
set_target_properties(QScintilla::QScintilla PROPERTIES
  IMPORTED_LOCATION "${QSCINTILLA_LIBRARY}"
  INTERFACE_INCLUDE_DIRECTORIES "${QSCINTILLA_INCLUDE_DIR}"
  INTERFACE_COMPILE_DEFINITIONS QSCINTILLA_DLL
  INTERFACE_LINK_LIBRARIES "Qt6::Widgets;Qt6::PrintSupport")
