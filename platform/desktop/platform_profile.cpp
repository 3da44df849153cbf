#include "platform/desktop/platform_profile.h"

#include "platform/posix/bounded_read.h"
#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <sstream>
#include <thread>
#include <utility>

namespace kestro {

namespace {

constexpr std::size_t maximumBytes = 256;

/// How often to check on a running program; one runs only while the user is being asked.
constexpr std::chrono::milliseconds lookInterval(50);

/// The first bytes of a small kernel file, without the newline; empty when it cannot be read.
std::string readSmallFile(const std::string& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    const std::string text = readAtMost(file.get(), maximumBytes).value_or(std::string());
    return text.substr(0, text.find('\n'));
}

/// Starts a program that reads `input`, and discards its output; nullopt: it did not start.
std::optional<pid_t> spawnWithInput(const std::vector<std::string>& command, const std::string& input) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    // A value is far smaller than a pipe's buffer, so this never blocks on the reader.
    const bool written = ::write(ends[1], input.data(), input.size()) == static_cast<ssize_t>(input.size());
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<char*> arguments;
    for (const auto& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    const bool started =
        written && ::posix_spawn(&child, arguments.front(), &actions, nullptr, arguments.data(), environ) == 0;
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[0]);
    ::close(ends[1]);
    return started ? std::optional(child) : std::nullopt;
}

/// Waits for a child; false: it is still running.
bool waitForChild(pid_t child, std::chrono::steady_clock::time_point deadline,
                  const std::function<bool()>& keepWaiting) {
    while (::waitpid(child, nullptr, WNOHANG) == 0) {
        if (!keepWaiting() || std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(lookInterval);
    }
    return true;
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
    // Without an agent of the desktop, pkexec would prompt on a terminal that the user does not see.
    const auto child = spawnWithInput(
        {paths_.pkexec, "--disable-internal-agent", paths_.tee, path("platform_profile")}, *value + "\n");
    if (!child || waitForChild(*child, std::chrono::steady_clock::now() + bound, keepWaiting)) {
        return;
    }
    // Permitted while pkexec is asking. Once it runs as root, it only has a few bytes to write.
    ::kill(*child, SIGTERM);
    waitForChild(*child, std::chrono::steady_clock::now() + std::chrono::seconds(1), [] { return true; });
}

std::optional<std::string> PlatformProfile::offeredValue(PowerProfile profile) const {
    for (const auto candidate : namesOf(profile).kernelValues) {
        std::istringstream choices(readSmallFile(path("platform_profile_choices")));
        for (std::string choice; choices >> choice;) {
            if (choice == candidate) {
                return choice;
            }
        }
    }
    return std::nullopt;
}

std::string PlatformProfile::path(const char* name) const {
    return paths_.root + "/sys/firmware/acpi/" + name;
}

}  // namespace kestro
