#pragma once

#include <string>

namespace kestro {

/// The root of the sources as an absolute path without a trailing slash.
std::string sourceTree();

/// The build folder of the tests, likewise.
std::string buildTree();

}  // namespace kestro
