#include "platform/posix/child_process.h"

#include "platform/posix/child_system.h"
#include "platform/posix/descriptor.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <utility>

namespace kestro {

namespace {

/// How long to wait for a child.
class Patience {
public:
    Patience(std::chrono::milliseconds time, std::function<bool()> keepWaiting)
        : deadline_(std::chrono::steady_clock::now() + time), keepWaiting_(std::move(keepWaiting)) {}

    bool isOver() const { return std::chrono::steady_clock::now() >= deadline_ || !keepWaiting_(); }

    /// How long to block until the next check.
    int milliseconds() const {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now());
        return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, checkInterval));
    }

private:
    static constexpr int checkInterval = 100;

    std::chrono::steady_clock::time_point deadline_;
    std::function<bool()> keepWaiting_;
};

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;

    bool open() {
        std::array<int, 2> ends{};
        if (!openPrivatePipe(ends)) {
            return false;
        }
        readEnd = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
        return true;
    }
};

/// Attributes of a new child: its three pipes, default signals and a separate process group.
class SpawnPlan {
public:
    SpawnPlan(int input, int output, int error) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_adddup2(&actions_, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, error, STDERR_FILENO);
        sigset_t signals;
        posix_spawnattr_init(&attributes_);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setpgroup(&attributes_, 0);
        const auto flags = closeOtherDescriptors(actions_);
        posix_spawnattr_setflags(&attributes_, static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                                  POSIX_SPAWN_SETPGROUP | flags));
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    std::optional<pid_t> spawn(const ChildRequest& request) const {
        std::vector<char*> words{const_cast<char*>(request.executable.c_str())};
        for (const auto& argument : request.arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        pid_t child = 0;
        if (posix_spawn(&child, words.front(), &actions_, &attributes_, words.data(),
                        environmentOfThisProcess()) != 0) {
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
bool drainBoth(Descriptor& output, Descriptor& error, std::string& text, std::size_t limit,
               const Patience& patience) {
    while (output.isOpen() || error.isOpen()) {
        // A closed descriptor is -1, which poll ignores.
        std::array<pollfd, 2> waiting{{{output.get(), POLLIN, 0}, {error.get(), POLLIN, 0}}};
        const int ready = poll(waiting.data(), waiting.size(), patience.milliseconds());
        if (patience.isOver() || (ready < 0 && errno != EINTR)) {
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

/// Without a status where the caller's parent made this process ignore its children's.
bool hasExited(pid_t child) {
    siginfo_t information{};
    if (waitid(P_PID, static_cast<id_t>(child), &information, WEXITED | WNOHANG | WNOWAIT) != 0) {
        return errno == ECHILD;
    }
    return information.si_pid == child;
}

/// Waits for the child to exit. False: patience ended first.
bool waitForExit(pid_t child, const Patience& patience) {
    // Without a descriptor, only check for the exit again and again.
    const Descriptor process(openProcess(child));
    constexpr int milliseconds = 10;
    while (!hasExited(child)) {
        if (patience.isOver()) {
            return false;
        }
        pollfd waiting{process.get(), POLLIN, 0};
        poll(&waiting, 1, process.isOpen() ? patience.milliseconds() : milliseconds);
    }
    return true;
}

}  // namespace

std::optional<CommandOutput> runChild(const ChildRequest& request) {
    const Patience patience(request.time, request.keepWaiting);
    Pipe input;
    Pipe output;
    Pipe error;
    if (!input.open() || !output.open() || !error.open()) {
        return std::nullopt;
    }
    // A pipe holds a page at least, so this never blocks.
    assert(request.input.size() <= 4096);
    if (write(input.writeEnd.get(), request.input.data(), request.input.size()) !=
        static_cast<ssize_t>(request.input.size())) {
        return std::nullopt;
    }
    const auto child = SpawnPlan(input.readEnd.get(), output.writeEnd.get(), error.writeEnd.get()).spawn(request);
    if (!child) {
        return std::nullopt;
    }
    input.writeEnd.close();
    output.writeEnd.close();
    error.writeEnd.close();

    CommandOutput result{{}, 128 + SIGKILL};
    if (!drainBoth(output.readEnd, error.readEnd, result.standardOutput, request.outputBytes, patience) ||
        !waitForExit(*child, patience)) {
        kill(-*child, SIGKILL);
        if (!waitForExit(*child, Patience(std::chrono::seconds(1), [] { return true; }))) {
            return result;
        }
    }
    int status = 0;
    pid_t reaped = 0;
    while ((reaped = waitpid(*child, &status, 0)) < 0 && errno == EINTR) {
    }
    if (reaped < 0) {
        return result;
    }
    result.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

}  // namespace kestro
