#pragma once

#include "core/platform/user_defaults.h"

#include <map>

namespace kestro {

/// Preferences in memory. Reads use `values`, which a test may fill; writes are counted per key.
class SimulatedUserDefaults final : public UserDefaults {
public:
    SimulatedUserDefaults();
    ~SimulatedUserDefaults() override;

    std::optional<PreferenceValue> object(std::string_view key) const override;
    void set(std::string_view key, PreferenceValue value) override;

    std::map<std::string, PreferenceValue, std::less<>> values;

    std::int64_t writes(std::string_view key) const;
    std::int64_t totalWrites() const;

private:
    std::map<std::string, std::int64_t, std::less<>> writes_;
};

}  // namespace kestro
