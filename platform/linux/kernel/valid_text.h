#pragma once

#include <string>
#include <string_view>

namespace kestro {

/// `bytes` as one line of valid UTF-8: control characters become "?", invalid bytes become U+FFFD.
std::string validText(std::string_view bytes);

}  // namespace kestro
