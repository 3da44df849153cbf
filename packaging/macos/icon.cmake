# The icon of the bundle; other systems only test it.
add_library(kestro_icon_file STATIC packaging/macos/icon_file.cpp packaging/macos/icon_file.h)
target_link_libraries(kestro_icon_file PUBLIC kestro_options kestro_qt Qt6::Gui Qt6::Svg)
