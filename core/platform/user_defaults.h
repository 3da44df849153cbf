#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kestro {

/// A data blob in the preferences.
using PreferenceData = std::vector<std::uint8_t>;

/// A stored preference. Types are preserved: what was written as an integer reads back as one.
using PreferenceValue = std::variant<bool, std::int64_t, double, std::string, PreferenceData>;

/// The per-user preferences domain. Main thread. Reads see every earlier write immediately. The platform decides
/// when values reach the disk, at the latest before the process ends. Write errors are not reported.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// nullopt: nothing is stored under the key.
    virtual std::optional<PreferenceValue> object(std::string_view key) const = 0;

    virtual void set(std::string_view key, PreferenceValue value) = 0;
};

}  // namespace kestro
