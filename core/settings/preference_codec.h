#pragma once

#include "core/base/enumeration.h"
#include "core/model/fan_curve.h"
#include "core/model/menubar_enumerations.h"
#include "core/platform/user_defaults.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// The stored form of one kind of preference. `encode` returns nullopt for a value without a stored form, `decode`
/// for a stored value of another kind or with corrupt contents. Pure functions; any thread.
///
/// Flags and numbers are stored as they are. Integers and doubles convert into each other if nothing is lost;
/// flags and numbers never do. Enumerations, module lists and curves are data blobs of JSON.
template <typename T>
struct PreferenceCodec;

template <>
struct PreferenceCodec<bool> {
    static std::optional<PreferenceValue> encode(bool value) { return value; }
    static std::optional<bool> decode(const PreferenceValue& stored);
};

template <>
struct PreferenceCodec<std::int64_t> {
    static std::optional<PreferenceValue> encode(std::int64_t value) { return value; }
    static std::optional<std::int64_t> decode(const PreferenceValue& stored);
};

template <>
struct PreferenceCodec<double> {
    static std::optional<PreferenceValue> encode(double value) { return value; }
    static std::optional<double> decode(const PreferenceValue& stored);
};

/// A JSON array of raw values in display order; one unknown entry invalidates the whole list.
template <>
struct PreferenceCodec<std::vector<MenubarModuleType>> {
    static std::optional<PreferenceValue> encode(const std::vector<MenubarModuleType>& modules);
    static std::optional<std::vector<MenubarModuleType>> decode(const PreferenceValue& stored);
};

template <>
struct PreferenceCodec<FanCurveConfig> {
    static std::optional<PreferenceValue> encode(const FanCurveConfig& curve);
    static std::optional<FanCurveConfig> decode(const PreferenceValue& stored);
};

/// `text` as a JSON string fragment, including the quotes, in a data blob.
PreferenceValue jsonStringData(std::string_view text);

/// The text of such a blob; nullopt unless it is exactly one JSON string.
std::optional<std::string> textOfJsonStringData(const PreferenceValue& stored);

template <ClosedEnumeration E>
struct PreferenceCodec<E> {
    static std::optional<PreferenceValue> encode(E value) { return jsonStringData(rawValue(value)); }
    static std::optional<E> decode(const PreferenceValue& stored) {
        const auto text = textOfJsonStringData(stored);
        return text ? fromRawValue<E>(*text) : std::nullopt;
    }
};

}  // namespace kestro
