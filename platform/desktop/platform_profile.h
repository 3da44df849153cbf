#pragma once

#include "platform/desktop/power_profile.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace kestro {

/// The kernel's power profile, /sys/firmware/acpi/platform_profile, for machines without a profile daemon.
/// Reading needs no privileges; writing is up to the administrator and goes through pkexec. Any thread.
class PlatformProfile {
public:
    struct Paths {
        std::string root = "";  ///< prefixed to /sys, for replayed machines
        std::string pkexec = "/usr/bin/pkexec";
        std::string tee = "/usr/bin/tee";
    };

    explicit PlatformProfile(Paths paths) : paths_(std::move(paths)) {}

    /// nullopt: the machine has no such file, or its value maps to none of the three profiles.
    std::optional<PowerProfile> read() const;

    /// Whether the kernel offers a value for `profile`.
    bool offers(PowerProfile profile) const { return offeredValue(profile).has_value(); }

    /// Runs `pkexec tee /sys/firmware/acpi/platform_profile` to write the value that the kernel offers for
    /// `profile`; no shell is involved. Returns when the program has ended, when `keepWaiting` returns false, or
    /// after `bound`; in the latter two cases the prompt is cancelled. Does nothing if the kernel offers no such
    /// value or the profile is already active.
    void write(PowerProfile profile, std::chrono::milliseconds bound,
               const std::function<bool()>& keepWaiting) const;

private:
    std::optional<std::string> offeredValue(PowerProfile profile) const;
    std::string path(const char* name) const;

    Paths paths_;
};

}  // namespace kestro
