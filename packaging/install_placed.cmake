# Run while installing, for the files whose contents or place depend on the prefix.

set(program "${CMAKE_INSTALL_PREFIX}/${binaries}/tallowin")

# place_configured(FILE DIRECTORY): the file made from "FILE.in", below the prefix.
function(place_configured file directory)
  configure_file("${source}/${file}.in" "${built}/${file}" @ONLY)
  file(INSTALL "${built}/${file}" DESTINATION "${CMAKE_INSTALL_PREFIX}/${directory}")
endfunction()

place_configured(tallowin.service lib/systemd/user)
place_configured(${id}.service ${data}/dbus-1/services)

# The unit starts with every desktop that systemd looks after; a user who does not want that masks it.
set(wanted "${CMAKE_INSTALL_PREFIX}/lib/systemd/user/graphical-session.target.wants")
file(CREATE_LINK ../tallowin.service "${built}/wanted.link" SYMBOLIC)
file(INSTALL "${built}/wanted.link" DESTINATION "${wanted}" RENAME tallowin.service)

# Configuration of a system that is installed in /usr is in /etc, and Debian's zsh has a place for packages there.
set(configuration "${CMAKE_INSTALL_PREFIX}/etc")
set(zsh site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(configuration /etc)
  if(EXISTS /etc/debian_version)
    set(zsh vendor-completions)
  endif()
endif()
file(INSTALL "${source}/${id}.autostart.desktop" DESTINATION "${configuration}/xdg/autostart" RENAME ${id}.desktop)
file(INSTALL "${built}/completions/_tallowin" DESTINATION "${CMAKE_INSTALL_PREFIX}/${data}/zsh/${zsh}")
