#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/power_profile.h"

namespace kestro {

/// The kernel's own power profile, /sys/firmware/acpi/platform_profile, for machines without a profile daemon.
/// Reading is free; writing belongs to the administrator and goes through pkexec. Any thread.
class PlatformProfile {
public:
    struct Paths {
        std::string root = "";  ///< put before /sys, for replayed machines
        std::string pkexec = "/usr/bin/pkexec";
        std::string tee = "/usr/bin/tee";
    };

    explicit PlatformProfile(Paths paths) : paths_(std::move(paths)) {}

    /// nullopt: the machine has no such file, or it holds a value that is none of the three.
    std::optional<PowerProfile> read() const;

    /// Has `pkexec tee /sys/firmware/acpi/platform_profile` write the value that the kernel offers for
    /// `profile`; no shell is involved. Returns when the program has ended, when `keepWaiting` has turned false,
    /// or after `bound`; in the latter two cases the question to the user is withdrawn. Does nothing when the
    /// kernel offers no such value or the profile is active already.
    void write(PowerProfile profile, std::chrono::milliseconds bound,
               const std::function<bool()>& keepWaiting) const;

private:
    std::optional<std::string> offeredValue(PowerProfile profile) const;
    std::string path(const char* name) const;

    Paths paths_;
};

}  // namespace kestro
