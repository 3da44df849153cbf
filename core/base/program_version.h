#pragma once

#include <string_view>

namespace kestro {

/// The version of the program, as in the topmost heading of CHANGELOG.md.
std::string_view programVersion();

}  // namespace kestro
