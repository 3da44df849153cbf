#include "platform/simulated/simulated_user_defaults.h"

#include <utility>

namespace kestro {

SimulatedUserDefaults::SimulatedUserDefaults() = default;

SimulatedUserDefaults::~SimulatedUserDefaults() = default;

std::optional<PreferenceValue> SimulatedUserDefaults::object(std::string_view key) const {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

void SimulatedUserDefaults::set(std::string_view key, PreferenceValue value) {
    ++writes_[std::string(key)];
    values.insert_or_assign(std::string(key), std::move(value));
}

std::int64_t SimulatedUserDefaults::writes(std::string_view key) const {
    const auto found = writes_.find(key);
    return found == writes_.end() ? 0 : found->second;
}

std::int64_t SimulatedUserDefaults::totalWrites() const {
    std::int64_t total = 0;
    for (const auto& [key, count] : writes_) {
        total += count;
    }
    return total;
}

}  // namespace kestro
