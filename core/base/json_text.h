#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace kestro {

/// The JSON value that the whole of `text` is; a discarded one when it is none. Pure; any thread. The library
/// reads fractions by the decimal point of the process's locale: LC_NUMERIC has to stay "C".
template <typename Json = nlohmann::json>
Json parsedJson(std::string_view text) {
    // The parser takes a zero byte, which no JSON holds, for the end of the text.
    const bool endsEarly = text.find('\0') != std::string_view::npos;
    return endsEarly ? Json(Json::value_t::discarded) : Json::parse(text, nullptr, false);
}

}  // namespace kestro
