#pragma once

#include "platform/desktop/preference_json.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// Numbers beyond the range of a double, such as 1e999, are valid JSON, but the parser rejects a whole text for
/// one of them. In a document made here, such a number is a binary value that holds its digits; no JSON text has
/// binary values. Pure; any thread.

/// Parses a text that the parser rejects; nullopt: for another reason.
std::optional<PreferenceJson> parseOverflowingNumbers(std::string_view text);

/// Whether the document contains such a number.
bool holdsOverflowingNumber(const PreferenceJson& document);

/// The document as text, with such numbers as they were. `indent` as in nlohmann::json.
std::string dumpWithOverflowingNumbers(const PreferenceJson& document, int indent);

}  // namespace kestro
