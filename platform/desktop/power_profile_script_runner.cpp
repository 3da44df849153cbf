#include "platform/desktop/power_profile_script_runner.h"

#include "platform/desktop/power_profiles.h"

namespace kestro {

std::optional<PowerProfile> profileOfScript(std::string_view source) {
    constexpr std::string_view before = "do shell script \"pmset -a powermode ";
    constexpr std::string_view after = "\" with administrator privileges";
    if (source.size() != before.size() + 1 + after.size() || !source.starts_with(before) ||
        !source.ends_with(after)) {
        return std::nullopt;
    }
    const char value = source[before.size()];
    return value >= '0' && value <= '2' ? std::optional(static_cast<PowerProfile>(value - '0')) : std::nullopt;
}

void PowerProfileScriptRunner::execute(const std::string& source) {
    if (const auto profile = profileOfScript(source)) {
        profiles_.select(*profile);
    }
}

}  // namespace kestro
