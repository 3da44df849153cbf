include(GNUInstallDirs)
install(TARGETS kestro RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_SOURCE_DIR}/packaging/kestro.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/icons/kestro.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)

set(CPACK_PACKAGE_NAME kestro)
set(CPACK_PACKAGE_VENDOR "The Kestro developers")
set(CPACK_PACKAGE_CONTACT "The Kestro developers <kestro@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "System monitor for the status bar")
set(CPACK_PACKAGE_DESCRIPTION
  "Kestro shows processor, memory, temperatures, fans, network, battery and the busiest processes as a readout in\n\
the status bar, a quick-glance popover and a dashboard, at a cost that cannot be felt.")
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-inter, fonts-noto-color-emoji, pkexec, power-profiles-daemon, qt6-wayland")
set(CPACK_STRIP_FILES ON)
include(CPack)
