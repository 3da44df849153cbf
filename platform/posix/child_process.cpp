#include "platform/posix/child_process.h"

#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace kestro {

namespace {

using Deadline = std::chrono::steady_clock::time_point;

int millisecondsUntil(Deadline deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60'000));
}

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;

    bool open() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            return false;
        }
        readEnd = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
        return true;
    }
};

/// Attributes of a new child: empty input, its two pipes, default signals and a separate process group.
class SpawnPlan {
public:
    SpawnPlan(int output, int error) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, error, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);

        sigset_t signals;
        posix_spawnattr_init(&attributes_);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setpgroup(&attributes_, 0);
        posix_spawnattr_setflags(&attributes_,
                                 POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    std::optional<pid_t> spawn(const std::string& executable, const std::vector<std::string>& arguments) const {
        std::vector<char*> words{const_cast<char*>(executable.c_str())};
        for (const auto& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        pid_t child = 0;
        if (posix_spawn(&child, executable.c_str(), &actions_, &attributes_, words.data(), environ) != 0) {
            return std::nullopt;
        }
        return child;
    }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Reads the available data. False at end of file.
bool drain(const Descriptor& from, std::string* into, std::size_t limit) {
    std::array<char, 16384> bytes;
    const auto length = read(from.get(), bytes.data(), bytes.size());
    if (length < 0) {
        return errno == EINTR || errno == EAGAIN;
    }
    if (into != nullptr) {
        into->append(bytes.data(), std::min(static_cast<std::size_t>(length), limit - into->size()));
    }
    return length > 0;
}

/// Drains both pipes until end of file. False: a limit was exceeded first.
bool drainBoth(Descriptor& output, Descriptor& error, std::string& text, std::size_t limit, Deadline deadline) {
    while (output.isOpen() || error.isOpen()) {
        // A closed descriptor is -1, which poll ignores.
        std::array<pollfd, 2> waiting{{{output.get(), POLLIN, 0}, {error.get(), POLLIN, 0}}};
        const int ready = poll(waiting.data(), waiting.size(), millisecondsUntil(deadline));
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        if (ready < 0 && errno != EINTR) {
            return false;
        }
        if (ready <= 0) {
            continue;
        }
        if (waiting[0].revents != 0 && !drain(output, &text, limit)) {
            output.close();
        }
        if (waiting[1].revents != 0 && !drain(error, nullptr, 0)) {
            error.close();
        }
        if (text.size() >= limit) {
            return false;
        }
    }
    return true;
}

/// Polls for the exit, for sandboxes without process descriptors.
bool waitForExitByLooking(pid_t child, Deadline deadline) {
    constexpr int milliseconds = 10;
    for (;;) {
        siginfo_t information{};
        if (waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOHANG | WNOWAIT) != 0 &&
            errno != EINTR) {
            return false;
        }
        if (information.si_pid == child) {
            return true;
        }
        if (millisecondsUntil(deadline) == 0) {
            return false;
        }
        poll(nullptr, 0, milliseconds);
    }
}

/// Waits for the child to exit. False: the deadline expired first.
bool waitForExit(pid_t child, Deadline deadline) {
    const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
    if (!process.isOpen()) {
        return waitForExitByLooking(child, deadline);
    }
    pollfd waiting{process.get(), POLLIN, 0};
    for (;;) {
        const int milliseconds = millisecondsUntil(deadline);
        const int ready = poll(&waiting, 1, milliseconds);
        if (ready > 0 || milliseconds == 0 || (ready < 0 && errno != EINTR)) {
            return ready > 0;
        }
    }
}

}  // namespace

std::optional<CommandOutput> runChild(const std::string& executable, const std::vector<std::string>& arguments,
                                      std::size_t outputBytes, std::chrono::milliseconds time) {
    const auto deadline = std::chrono::steady_clock::now() + time;
    Pipe output;
    Pipe error;
    if (!output.open() || !error.open()) {
        return std::nullopt;
    }
    const auto child = SpawnPlan(output.writeEnd.get(), error.writeEnd.get()).spawn(executable, arguments);
    if (!child) {
        return std::nullopt;
    }
    output.writeEnd.close();
    error.writeEnd.close();

    CommandOutput result;
    const bool finished = drainBoth(output.readEnd, error.readEnd, result.standardOutput, outputBytes, deadline) &&
                          waitForExit(*child, deadline);
    if (!finished) {
        kill(-*child, SIGKILL);
    }
    int status = 0;
    while (waitpid(*child, &status, 0) < 0 && errno == EINTR) {
    }
    result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

}  // namespace kestro
