#include "core/settings/preference_codec.h"

#include "core/base/json_text.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <utility>
#include <variant>

namespace kestro {

namespace {

using Json = nlohmann::json;

std::string_view textOf(const PreferenceData& data) {
    return {reinterpret_cast<const char*>(data.data()), data.size()};
}

PreferenceData bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

/// Whether JSON begins with `opening`, after what the parser skips.
bool beginsWith(std::string_view json, char opening) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    json.remove_prefix(json.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    const auto first = json.find_first_not_of(" \t\n\r");
    return first != std::string_view::npos && json[first] == opening;
}

/// The blob parsed as the kind of JSON that begins with `opening`, '"' or '['; a discarded value when it is
/// another kind or invalid, or when `stored` is not a blob.
Json jsonOf(const PreferenceValue& stored, char opening) {
    const auto* data = std::get_if<PreferenceData>(&stored);
    return data && beginsWith(textOf(*data), opening) ? parsedJson(textOf(*data)) : Json(Json::value_t::discarded);
}

}  // namespace

std::optional<bool> PreferenceCodec<bool>::decode(const PreferenceValue& stored) {
    const bool* flag = std::get_if<bool>(&stored);
    return flag ? std::optional(*flag) : std::nullopt;
}

std::optional<std::int64_t> PreferenceCodec<std::int64_t>::decode(const PreferenceValue& stored) {
    if (const auto* integer = std::get_if<std::int64_t>(&stored)) {
        return *integer;
    }
    const auto* number = std::get_if<double>(&stored);
    constexpr double limit = 0x1p63;
    if (!number || !(*number >= -limit && *number < limit) || std::trunc(*number) != *number) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(*number);
}

std::optional<double> PreferenceCodec<double>::decode(const PreferenceValue& stored) {
    if (const auto* number = std::get_if<double>(&stored)) {
        return *number;
    }
    const auto* integer = std::get_if<std::int64_t>(&stored);
    constexpr std::int64_t largestExact = std::int64_t{1} << std::numeric_limits<double>::digits;
    const bool isExact = integer && *integer >= -largestExact && *integer <= largestExact;
    return isExact ? std::optional(static_cast<double>(*integer)) : std::nullopt;
}

std::optional<PreferenceValue> PreferenceCodec<std::vector<MenubarModuleType>>::encode(
    const std::vector<MenubarModuleType>& modules) {
    Json list = Json::array();
    for (const auto module : modules) {
        list.push_back(std::string(rawValue(module)));
    }
    return bytesOf(list.dump());
}

std::optional<std::vector<MenubarModuleType>> PreferenceCodec<std::vector<MenubarModuleType>>::decode(
    const PreferenceValue& stored) {
    const Json list = jsonOf(stored, '[');
    if (!list.is_array()) {
        return std::nullopt;
    }
    std::vector<MenubarModuleType> modules;
    for (const auto& entry : list) {
        const auto* text = entry.get_ptr<const Json::string_t*>();
        const auto module = text ? fromRawValue<MenubarModuleType>(*text) : std::nullopt;
        if (!module) {
            return std::nullopt;
        }
        modules.push_back(*module);
    }
    return modules;
}

std::optional<PreferenceValue> PreferenceCodec<FanCurveConfig>::encode(const FanCurveConfig& curve) {
    const auto json = encodeFanCurve(curve);
    return json ? std::optional<PreferenceValue>(bytesOf(*json)) : std::nullopt;
}

std::optional<FanCurveConfig> PreferenceCodec<FanCurveConfig>::decode(const PreferenceValue& stored) {
    const auto* data = std::get_if<PreferenceData>(&stored);
    return data ? decodeFanCurve(textOf(*data)) : std::nullopt;
}

PreferenceValue jsonStringData(std::string_view text) {
    return bytesOf(Json(std::string(text)).dump());
}

std::optional<std::string> textOfJsonStringData(const PreferenceValue& stored) {
    Json json = jsonOf(stored, '"');
    auto* text = json.get_ptr<Json::string_t*>();
    return text ? std::optional(std::move(*text)) : std::nullopt;
}

}  // namespace kestro
