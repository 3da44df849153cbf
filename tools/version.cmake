# Reads the version and its date from the topmost heading of the changelog: the only place that has them.
file(STRINGS ${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG.md headings REGEX "^## ")
list(GET headings 0 newest)
if(NOT newest MATCHES "^## ([0-9]+\\.[0-9]+\\.[0-9]+) \\(([0-9]+-[0-9]+-[0-9]+)\\)$")
  message(FATAL_ERROR "CHANGELOG.md starts with no version and date: ${newest}")
endif()
set(KESTRO_VERSION ${CMAKE_MATCH_1})
set(KESTRO_RELEASE_DATE ${CMAKE_MATCH_2})
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
