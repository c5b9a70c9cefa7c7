# cpack -G DEB makes the Debian package.

set(documentation ${CMAKE_CURRENT_BINARY_DIR}/debian)
file(MAKE_DIRECTORY ${documentation})
configure_file(debian/copyright ${documentation}/copyright COPYONLY)
add_custom_command(OUTPUT ${documentation}/changelog.Debian.gz DEPENDS debian/changelog
                   COMMAND gzip -9nc ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog >${documentation}/changelog.Debian.gz)
add_custom_command(OUTPUT ${documentation}/changelog.gz DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md
                   COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md >${documentation}/changelog.gz)
add_custom_target(tallowin_debian_files ALL
                  DEPENDS ${documentation}/changelog.Debian.gz ${documentation}/changelog.gz)
install(FILES ${documentation}/copyright ${documentation}/changelog.Debian.gz ${documentation}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tallowin)
install(FILES ${documentation}/copyright ${documentation}/changelog.Debian.gz ${documentation}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tallowin-ui COMPONENT ui)
install(FILES debian/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME tallowin)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tallowin)
set(TALLOWIN_MAINTAINER "The Tallowin authors <tallowin@localhost>" CACHE STRING "Who makes the package")
set(CPACK_PACKAGE_CONTACT ${TALLOWIN_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "names, switches and scripts virtual desktops")
set(CPACK_PACKAGE_DESCRIPTION
    "Tallowin makes virtual desktops nameable, navigable and scriptable, beside any
window manager on X11 that follows the Extended Window Manager Hints.
.
It switches by name and goes back, moves windows and puts them back where they
were, runs programs and scripts when a desktop is entered or left, keeps the
time spent there, and tells bars and scripts what changes.")
# The prefix is /usr, and one file goes to /etc.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Unspecified ui)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_NAME tallowin)
set(CPACK_DEBIAN_UI_PACKAGE_NAME tallowin-ui)
set(CPACK_COMPONENT_UI_DESCRIPTION
    "windows of Tallowin, which names virtual desktops
Tallowin makes virtual desktops nameable, navigable and scriptable. This package
has what it shows: a menu in the panel, a pop-up on every switch, messages,
questions and dialogs.")
set(CPACK_DEBIAN_UI_PACKAGE_DEPENDS "tallowin (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_UI_PACKAGE_SUGGESTS "libcanberra0, speech-dispatcher")
# Windows, completions, the bus for messages, and what lets the desktop find icons and open URLs.
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_RECOMMENDS
    "tallowin-ui (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), bash-completion, default-dbus-session-bus | dbus-session-bus, desktop-file-utils, hicolor-icon-theme, xdg-utils")
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_SUGGESTS "notification-daemon, zsh")
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/conffiles)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
