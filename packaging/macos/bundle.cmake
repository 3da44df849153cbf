# Kestro.app: the program with its icon, signed without a certificate, which is what macOS demands of programs that
# never leave their machine.
set_target_properties(kestro PROPERTIES MACOSX_BUNDLE ON OUTPUT_NAME Kestro
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_SOURCE_DIR}/packaging/macos/Info.plist.in)

add_executable(kestro_make_icon packaging/macos/make_icon.cpp)
target_link_libraries(kestro_make_icon PRIVATE kestro_icon_file)
set(icon ${CMAKE_BINARY_DIR}/AppIcon.icns)
add_custom_command(OUTPUT ${icon}
  COMMAND kestro_make_icon ${CMAKE_SOURCE_DIR}/packaging/icons/kestro.svg ${icon}
  DEPENDS ${CMAKE_SOURCE_DIR}/packaging/icons/kestro.svg)

set(resources $<TARGET_BUNDLE_CONTENT_DIR:kestro>/Resources)
add_custom_target(kestro_bundle ALL DEPENDS ${icon}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${resources}
  COMMAND ${CMAKE_COMMAND} -E copy_if_different ${icon} ${resources}/AppIcon.icns
  COMMAND codesign --force --options runtime --sign -
    --entitlements ${CMAKE_SOURCE_DIR}/packaging/macos/Kestro.entitlements $<TARGET_BUNDLE_DIR:kestro>)
add_dependencies(kestro_bundle kestro)
