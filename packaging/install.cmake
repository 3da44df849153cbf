# What `cmake --install` puts where. The Debian packages divide the same files.
include(GNUInstallDirs)

set(applications ${CMAKE_INSTALL_DATADIR}/applications)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
# The reverse of the home page, as AppStream wants it.
set(KESTRO_COMPONENT example.kestro.kestro)
configure_file(packaging/kestro.metainfo.xml.in kestro.metainfo.xml @ONLY)

install(TARGETS kestro kestro-readout RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES packaging/kestro.desktop DESTINATION ${applications})
install(FILES packaging/kestro-autostart.desktop DESTINATION ${CMAKE_INSTALL_SYSCONFDIR}/xdg/autostart)
install(FILES ${CMAKE_BINARY_DIR}/kestro.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
  RENAME ${KESTRO_COMPONENT}.metainfo.xml)
# The bus needs the program's full path, and only the installation knows its prefix.
install(CODE "
  set(KESTRO_PROGRAM \"${CMAKE_INSTALL_BINDIR}/kestro\")
  cmake_path(ABSOLUTE_PATH KESTRO_PROGRAM BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\")
  # A prefix may be relative to the current folder.
  cmake_path(ABSOLUTE_PATH KESTRO_PROGRAM NORMALIZE)
  include(\"${CMAKE_SOURCE_DIR}/packaging/service_file.cmake\")
  kestro_write_service_file(\"${CMAKE_BINARY_DIR}/kestro.Readout.service\" \"\${KESTRO_PROGRAM}\")")
install(FILES ${CMAKE_BINARY_DIR}/kestro.Readout.service DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
install(FILES shell/linux/readout/kestro.Readout.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces)
install(FILES packaging/man/kestro.1 packaging/man/kestro-readout.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/icons/kestro.svg DESTINATION ${icons}/scalable/apps)
install(FILES packaging/icons/kestro-symbolic.svg DESTINATION ${icons}/symbolic/apps)

# Panels that cannot scale the icon take it in one of these sizes.
add_executable(render_icon packaging/icons/render.cpp)
target_link_libraries(render_icon PRIVATE kestro_options Qt6::Gui Qt6::Svg)
foreach(side 16 22 24 32 48 64 128 256 512)
  set(picture ${CMAKE_BINARY_DIR}/icons/${side}.png)
  add_custom_command(OUTPUT ${picture} DEPENDS render_icon packaging/icons/kestro.svg
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons
    COMMAND render_icon ${CMAKE_SOURCE_DIR}/packaging/icons/kestro.svg ${side} ${picture} VERBATIM)
  list(APPEND pictures ${picture})
  install(FILES ${picture} DESTINATION ${icons}/${side}x${side}/apps RENAME kestro.png)
endforeach()
add_custom_target(icons ALL DEPENDS ${pictures})

# The panels that run programs or scripts of ours. GNOME's shell loads extensions in one of two ways.
set(KESTRO_GNOME_SHELL "" CACHE STRING "GNOME Shell of the extension, as a number; empty: the installed one, else 43")
set(gnome_shell ${KESTRO_GNOME_SHELL})
if(NOT gnome_shell)
  set(gnome_shell 43)
  find_program(KESTRO_GNOME_SHELL_PROGRAM gnome-shell)
  if(KESTRO_GNOME_SHELL_PROGRAM)
    execute_process(COMMAND ${KESTRO_GNOME_SHELL_PROGRAM} --version OUTPUT_VARIABLE reported ERROR_QUIET)
    if(reported MATCHES "GNOME Shell ([0-9]+)")
      set(gnome_shell ${CMAKE_MATCH_1})
    endif()
  endif()
endif()
set(extension kestro@kestro.example)
execute_process(
  COMMAND ${CMAKE_SOURCE_DIR}/integrations/gnome-shell/build.sh ${gnome_shell} ${CMAKE_BINARY_DIR}/${extension}
  COMMAND_ERROR_IS_FATAL ANY)
file(GLOB sources CONFIGURE_DEPENDS integrations/gnome-shell/*)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
install(DIRECTORY ${CMAKE_BINARY_DIR}/${extension}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/gnome-shell/extensions)

# Plasma 5 and 6 each load a widget of their own.
set(KESTRO_PLASMA_VERSION "" CACHE STRING "Plasma of the widget, 5 or 6; empty: the installed one, else that of Debian")
set(plasma ${KESTRO_PLASMA_VERSION})
if(NOT plasma)
  execute_process(COMMAND ${CMAKE_SOURCE_DIR}/tools/plasma_version.sh OUTPUT_VARIABLE plasma
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()
set(widget kestro.readout)
execute_process(COMMAND ${CMAKE_SOURCE_DIR}/integrations/plasma/build.sh ${plasma} ${CMAKE_BINARY_DIR}/${widget}
  COMMAND_ERROR_IS_FATAL ANY)
file(GLOB sources CONFIGURE_DEPENDS integrations/plasma/* tools/plasma_version.sh)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
install(DIRECTORY ${CMAKE_BINARY_DIR}/${widget} DESTINATION ${CMAKE_INSTALL_DATADIR}/plasma/plasmoids)

install(DIRECTORY integrations/i3bar integrations/lxqt integrations/polybar integrations/tmux integrations/waybar
  integrations/xfce4-genmon DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kestro-readout/examples)
