#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kestro {

/// A power profile of the machine, with the numbers of the power-management tool's `powermode`.
enum class PowerProfile : std::uint8_t { balanced = 0, powerSaver = 1, performance = 2 };

/// The profile's name on the bus (org.freedesktop.UPower.PowerProfiles, ActiveProfile), and the equivalent
/// values of the kernel's platform_profile, the usual one first
/// (Documentation/userspace-api/sysfs-platform_profile.rst).
struct PowerProfileNames {
    PowerProfile profile;
    std::string_view busName;
    std::array<std::string_view, 3> kernelValues;
};

inline constexpr std::array<PowerProfileNames, 3> powerProfileNames{{
    {PowerProfile::balanced, "balanced", {"balanced", "balanced-performance", ""}},
    {PowerProfile::powerSaver, "power-saver", {"low-power", "quiet", "cool"}},
    {PowerProfile::performance, "performance", {"performance", "", ""}},
}};

constexpr const PowerProfileNames& namesOf(PowerProfile profile) {
    return powerProfileNames[static_cast<std::size_t>(profile)];
}

constexpr std::optional<PowerProfile> profileFromBusName(std::string_view name) {
    for (const auto& names : powerProfileNames) {
        if (names.busName == name) {
            return names.profile;
        }
    }
    return std::nullopt;
}

constexpr std::optional<PowerProfile> profileFromKernelValue(std::string_view value) {
    for (const auto& names : powerProfileNames) {
        for (const auto candidate : names.kernelValues) {
            if (!candidate.empty() && candidate == value) {
                return names.profile;
            }
        }
    }
    return std::nullopt;
}

}  // namespace kestro
