#pragma once

#include "core/platform/user_defaults.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestro {

/// Preferences in memory that record every read and write in order.
class RecordingUserDefaults final : public UserDefaults {
public:
    using Write = std::pair<std::string, PreferenceValue>;

    std::optional<PreferenceValue> object(std::string_view key) const override {
        reads.emplace_back(key);
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void set(std::string_view key, PreferenceValue value) override {
        writes.emplace_back(key, value);
        values.insert_or_assign(std::string(key), std::move(value));
    }

    /// Stores a blob without recording a write.
    void storeData(std::string_view key, std::string_view bytes) {
        values.insert_or_assign(std::string(key), PreferenceData(bytes.begin(), bytes.end()));
    }

    void store(std::string_view key, PreferenceValue value) {
        values.insert_or_assign(std::string(key), std::move(value));
    }

    /// The blob under `key` as text; a marker if there is none.
    std::string dataText(std::string_view key) const {
        const auto found = values.find(key);
        const auto* data = found == values.end() ? nullptr : std::get_if<PreferenceData>(&found->second);
        return data ? std::string(data->begin(), data->end()) : "<no data>";
    }

    mutable std::vector<std::string> reads;
    std::vector<Write> writes;
    std::map<std::string, PreferenceValue, std::less<>> values;
};

}  // namespace kestro
