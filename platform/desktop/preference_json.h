#pragma once

#include "core/platform/user_defaults.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// Preferences keep their order in the file.
using PreferenceJson = nlohmann::ordered_json;

/// Limits on all preferences that are read or written: bytes, levels of nesting, values. They are far above any
/// real file and low enough that a hostile one costs neither time nor stack.
inline constexpr std::size_t maximumPreferenceBytes = 1024UL * 1024;
inline constexpr int maximumPreferenceDepth = 32;
inline constexpr int maximumPreferenceElements = 10'000;

/// Whether `text` is within the limits. Does not check its syntax.
bool isBoundedPreferenceText(std::string_view text);

/// Parses JSON within the limits; nullopt: not JSON, or too large. A number that neither a 64-bit integer nor a
/// double can represent exactly becomes the nearest double, and is written as that; one beyond the range of a
/// double becomes a value without a preference, as overflowing_numbers.h describes.
std::optional<PreferenceJson> parsePreferenceJson(std::string_view text);

/// Encodes a preference for the file so that its type can be recovered:
/// - a boolean as true or false, an integer as a number without a fraction, a double as a number with a
///   fraction or an exponent, text as text;
/// - a data blob that holds compact JSON as {"json": VALUE}, for people to read, any other as
///   {"data": "BASE64"};
/// - a double that JSON has no number for as {"double": "inf" | "-inf" | "nan"};
/// - text that is not UTF-8 as {"text": "BASE64"}.
PreferenceJson encodePreference(const PreferenceValue& value);

/// The reverse of `encodePreference`. nullopt: not one of its forms, or an integer from 2^63 to 2^64 - 1. Any
/// other whole number beyond 64 bits becomes the nearest double.
std::optional<PreferenceValue> decodePreference(const PreferenceJson& json);

}  // namespace kestro
