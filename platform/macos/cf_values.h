#pragma once

#include "platform/macos/owned.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestro {

// Core Foundation's values as C++ values, and back. Any thread.

/// monostate: none of the other kinds, or a null object.
using CFValue = std::variant<std::monostate, bool, std::int64_t, double, std::string, std::vector<std::uint8_t>>;

/// Keeps the kinds apart: a boolean is no number, and a number is an integer unless it was made from a fraction.
/// Text that has no UTF-8 form, such as half a surrogate pair, is monostate.
CFValue valueOf(CFTypeRef object);

/// nullopt: not text.
std::optional<std::string> textOf(CFTypeRef object);

/// Empty: not valid UTF-8, or out of memory.
CFOwned<CFStringRef> makeString(std::string_view utf8);

/// Empty for monostate and for text that is not valid UTF-8.
CFOwned<CFTypeRef> makeObject(const CFValue& value);

/// The value under a key; null when it is missing. The dictionary keeps it.
CFTypeRef valueUnder(CFDictionaryRef dictionary, std::string_view key);

/// A dictionary of these keys and values. Empty: out of memory.
CFOwned<CFDictionaryRef> makeDictionary(const std::vector<CFTypeRef>& keys, const std::vector<CFTypeRef>& values);

}  // namespace kestro
