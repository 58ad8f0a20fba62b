# The package's name, version and relations. Its number is the changelog's, so that the two cannot differ.
set(changelog ${CMAKE_CURRENT_LIST_DIR}/changelog)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changelog})
file(STRINGS ${changelog} heading LIMIT_COUNT 1)
if(NOT heading MATCHES "^kelhpgl \\(${PROJECT_VERSION}-([0-9a-z]+)\\) ")
    message(FATAL_ERROR "${changelog} begins with another version than ${PROJECT_VERSION}: ${heading}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_1})
file(STRINGS ${changelog} signature REGEX "^ -- " LIMIT_COUNT 1)
string(REGEX REPLACE "^ -- (.*)  .*" "\\1" CPACK_PACKAGE_CONTACT "${signature}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelhpgl)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS $<TARGET_FILE_DIR:QRVEL> $<TARGET_FILE_DIR:kelplatform>)
# Labels need a font with all of Latin; the buttons of Qt's dialogs have other languages than English there.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, qt6-translations-l10n")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "viewer for plotter drawings written in HP-GL and HP-GL/2
KEL HPGL Display opens drawings that were written for pen plotters and for
printers that understand HP-GL/2, shows them in a window in which one can zoom
and turn pages, and prints them: on paper, or into PDF, SVG and PNG files, also
without a window. Other programs can feed it through a pipe or a socket.
.
Besides the viewer there are hpglsend, which sends files to a running viewer,
hpglplain, which turns a plotter's file into a few simple commands, and
hpgldump, which prints what the viewer makes of a file.")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/conffiles ${CMAKE_CURRENT_LIST_DIR}/postinst)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
