#pragma once

#include <map>

#include "core/platform/user_defaults.h"

namespace kestro {

/// Preferences in memory. Reads use `values`, which a test may fill; writes are counted per key.
class SimulatedUserDefaults final : public UserDefaults {
public:
    std::optional<PreferenceValue> object(std::string_view key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void set(std::string_view key, PreferenceValue value) override {
        ++writes_[std::string(key)];
        values.insert_or_assign(std::string(key), std::move(value));
    }

    std::map<std::string, PreferenceValue, std::less<>> values;

    std::int64_t writes(std::string_view key) const {
        const auto found = writes_.find(key);
        return found == writes_.end() ? 0 : found->second;
    }

    std::int64_t totalWrites() const {
        std::int64_t total = 0;
        for (const auto& [key, count] : writes_) {
            total += count;
        }
        return total;
    }

private:
    std::map<std::string, std::int64_t, std::less<>> writes_;
};

}  // namespace kestro
