#pragma once

#include <string>
#include <string_view>

namespace kestro {

/// `bytes` as one line of valid UTF-8: control characters become "?", bytes that are no UTF-8 become U+FFFD.
std::string validText(std::string_view bytes);

}  // namespace kestro
