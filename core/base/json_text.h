#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace kestro {

/// Parses the whole of `text` as one JSON value; returns a discarded value when it is not valid JSON. Pure; any
/// thread. The library parses fractions with the process locale's decimal point, so LC_NUMERIC must stay "C".
template <typename Json = nlohmann::json>
Json parsedJson(std::string_view text) {
    // The parser treats a zero byte, which is never valid JSON, as the end of the text.
    const bool endsEarly = text.find('\0') != std::string_view::npos;
    return endsEarly ? Json(Json::value_t::discarded) : Json::parse(text, nullptr, false);
}

}  // namespace kestro
