# Third-party headers that most sources include, precompiled once for many targets. They only save time: every source
# includes what it uses, which the presets without them and `./dev lint` verify.
option(KESTRO_PCH "Precompile headers" OFF)

# kestro_headers(NAME LIBRARIES... HEADERS... [FROM...]): a set of headers for targets that link at least these
# libraries. Headers may also come FROM further libraries, without their definitions.
function(kestro_headers name)
  cmake_parse_arguments(ARG "" "" "LIBRARIES;HEADERS;FROM" ${ARGN})
  if(NOT KESTRO_PCH)
    return()
  endif()
  set(source ${CMAKE_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  target_link_libraries(${name} PRIVATE kestro_options ${ARG_LIBRARIES})
  foreach(library IN LISTS ARG_FROM)
    target_include_directories(${name} SYSTEM PRIVATE $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

function(kestro_use_headers target name)
  if(KESTRO_PCH)
    target_precompile_headers(${target} REUSE_FROM ${name})
  endif()
endfunction()

if(KESTRO_PCH AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # The compiler cache reads preprocessed sources.
  target_compile_options(kestro_options INTERFACE -fpch-preprocess)
endif()

set(standard_headers <algorithm> <array> <chrono> <cmath> <cstdint> <functional> <limits> <map> <memory>
  <optional> <span> <string> <string_view> <utility> <variant> <vector>)
if(NOT APPLE)
  set(bus_headers <QDBusConnection> <QDBusMessage>)
endif()
set(qt_headers <QAccessible> <QApplication> ${bus_headers} <QMenu> <QMouseEvent> <QPainter> <QPainterPath> <QTimer>
  <QWidget>)
