# Where everything is installed. Whatever must name a place is written while it is installed, as only then the prefix is
# known (cmake --install BUILD --prefix PLACE).

install(TARGETS tallowin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS tallowin_main RUNTIME DESTINATION ${TALLOWIN_PRIVATE_FOLDER})
install(TARGETS tallowin_pictures tallowin_dbus LIBRARY DESTINATION ${TALLOWIN_PRIVATE_FOLDER}
        PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

# Windows are a part of their own. Users may call their program, and the resident one finds it beside itself.
install(TARGETS tallowin_ui RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ui)
file(RELATIVE_PATH ui_program "/${TALLOWIN_PRIVATE_FOLDER}" "/${CMAKE_INSTALL_BINDIR}/tallowin-ui")
file(CREATE_LINK ${ui_program} ${CMAKE_CURRENT_BINARY_DIR}/ui.link SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ui.link DESTINATION ${TALLOWIN_PRIVATE_FOLDER} RENAME tallowin-ui COMPONENT ui)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/manual/tallowin-ui.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ui)

set(built ${CMAKE_CURRENT_BINARY_DIR})
install(FILES ${built}/${id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${built}/${id}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES icons/${id}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES icons/${id}-symbolic.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps)
install(FILES ${built}/manual/tallowin.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${built}/manual/tallowin.5.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
install(FILES ${built}/completions/tallowin.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME tallowin)
install(FILES ${built}/completions/tallowin.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)

install(CODE "
  set(id ${id})
  set(source \"${CMAKE_CURRENT_SOURCE_DIR}\")
  set(built \"${built}\")
  set(binaries \"${CMAKE_INSTALL_BINDIR}\")
  set(data \"${CMAKE_INSTALL_DATADIR}\")")
install(SCRIPT install_placed.cmake)
