#pragma once

#include <cstddef>
#include <string_view>

namespace kestro {

/// ASCII white space, as text from tools and from the kernel has it.
inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/// `text` without white space at either end.
std::string_view trimmed(std::string_view text);

/// Cuts the first piece between white space off `text` and returns it; empty when there is none left.
std::string_view takePiece(std::string_view& text);

/// How many bytes the well-formed UTF-8 sequence at the start of `bytes` has: no overlong form, no surrogate,
/// nothing beyond U+10FFFF. 0: there is none.
std::size_t utf8SequenceLength(std::string_view bytes);

/// Whether the well-formed UTF-8 sequence at the start of `text` is a control character: U+0000 to U+001F, or
/// U+007F to U+009F.
bool beginsWithControl(std::string_view text);

/// Whether `bytes` are well-formed UTF-8 to their end.
bool isValidUtf8(std::string_view bytes);

}  // namespace kestro
