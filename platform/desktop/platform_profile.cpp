#include "platform/desktop/platform_profile.h"

#include "core/base/text.h"
#include "platform/posix/bounded_read.h"
#include "platform/posix/child_process.h"
#include "platform/posix/descriptor.h"

#include <fcntl.h>

namespace kestro {

namespace {

constexpr std::size_t maximumBytes = 256;

/// The first bytes of a small kernel file, without the newline; empty when it cannot be read.
std::string readSmallFile(const std::string& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    const std::string text = readAtMost(file.get(), maximumBytes).value_or(std::string());
    return text.substr(0, text.find('\n'));
}

}  // namespace

std::optional<PowerProfile> PlatformProfile::read() const {
    return profileFromKernelValue(readSmallFile(path("platform_profile")));
}

void PlatformProfile::write(PowerProfile profile, std::chrono::milliseconds bound,
                            const std::function<bool()>& keepWaiting) const {
    const auto value = offeredValue(profile);
    if (!value || read() == profile) {
        return;
    }
    // Without an agent of the desktop, pkexec would prompt on a terminal that the user does not see. It can be
    // killed while it asks; once it runs as root, it only has a few bytes to write.
    runChild({.executable = paths_.pkexec,
              .arguments = {"--disable-internal-agent", paths_.tee, path("platform_profile")},
              .input = *value + "\n",
              .time = bound,
              .keepWaiting = keepWaiting});
}

std::optional<std::string> PlatformProfile::offeredValue(PowerProfile profile) const {
    const std::string choices = readSmallFile(path("platform_profile_choices"));
    for (const auto candidate : namesOf(profile).kernelValues) {
        std::string_view rest = choices;
        for (auto choice = takeField(rest); !choice.empty(); choice = takeField(rest)) {
            if (choice == candidate) {
                return std::string(choice);
            }
        }
    }
    return std::nullopt;
}

std::string PlatformProfile::path(const char* name) const {
    return paths_.root + "/sys/firmware/acpi/" + name;
}

}  // namespace kestro
