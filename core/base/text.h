#pragma once

#include <cstddef>
#include <string_view>

namespace kestro {

/// ASCII white space, as found in the output of tools and of the kernel.
inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/// `text` without white space at either end.
std::string_view trimmed(std::string_view text);

/// Removes the first white-space-separated token from `text` and returns it; empty when none is left.
std::string_view takePiece(std::string_view& text);

/// Length in bytes of the well-formed UTF-8 sequence at the start of `bytes`: no overlong form, no surrogate,
/// nothing beyond U+10FFFF. 0: there is none.
std::size_t utf8SequenceLength(std::string_view bytes);

/// Whether the well-formed UTF-8 sequence at the start of `text` is a control character: U+0000 to U+001F, or
/// U+007F to U+009F.
bool beginsWithControl(std::string_view text);

/// Whether `bytes` is well-formed UTF-8 throughout.
bool isValidUtf8(std::string_view bytes);

}  // namespace kestro
