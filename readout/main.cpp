#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "readout/bus_readout.h"
#include "readout/line_format.h"
#include "readout/line_writer.h"
#include "readout/options.h"

namespace kestro {

namespace {

constexpr int wrongUsage = 2;
constexpr int shortestPauseMs = 1000;
constexpr int longestPauseMs = 30'000;

int complain(const std::string& reason, int status) {
    std::fprintf(stderr, "kestro-readout: %s\n", reason.c_str());
    return status;
}

int print(std::string_view text) {
    return LineWriter(STDOUT_FILENO).write(text) ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Only Waybar's form has a percentage.
bool showsMemory(LineForm form) {
    return form == LineForm::waybar;
}

int printOnce(LineForm form) {
    const BusConnection bus = openSessionBus();
    const auto readout = bus ? readOnce(*bus, showsMemory(form)) : std::nullopt;
    const int result = print(std::string(prologue(form)) + line(form, readout) + '\n');
    return readout ? result : EXIT_FAILURE;
}

int sendRequest(Request request, Point place) {
    const BusConnection bus = openSessionBus();
    if (!bus) {
        return complain("there is no session bus", EXIT_FAILURE);
    }
    const std::string reason = send(*bus, request, place);
    return reason.empty() ? EXIT_SUCCESS : complain(reason, EXIT_FAILURE);
}

/// Prints a line for each readout that differs from the previous one, until the reader has gone.
class Following {
public:
    explicit Following(const Options& options) : options_(options), shown_(options.lastLine) {}

    int run() {
        write(prologue(options_.form));
        while (output_.isOpen() && !hasFinished_) {
            if (!follower_) {
                connect();
            }
            if (follower_ && !follower_->process()) {
                follower_.reset();
            }
            if (!follower_) {
                show(std::nullopt);
            }
            if (!hasFinished_) {
                wait();
            }
        }
        return output_.hasFailed() ? EXIT_FAILURE : EXIT_SUCCESS;
    }

private:
    void connect() {
        if (BusConnection bus = openSessionBus()) {
            const ReadoutFollower::Wishes wishes{showsMemory(options_.form), options_.isHost};
            follower_ = std::make_unique<ReadoutFollower>(std::move(bus), wishes, [this](const auto& readout) {
                pauseMs_ = shortestPauseMs;
                show(readout);
            });
        }
    }

    /// Waits for the bus, or until it is time to connect again; in either case also for the reader to go.
    void wait() {
        // A reader that goes is reported without being asked for.
        std::array<pollfd, 2> waiting{pollfd{STDOUT_FILENO, 0, 0}, pollfd{-1, 0, 0}};
        int timeoutMs = pauseMs_;
        if (follower_) {
            waiting[1] = {follower_->descriptor(), follower_->events(), 0};
            timeoutMs = follower_->timeout();
        } else {
            pauseMs_ = std::min(2 * pauseMs_, longestPauseMs);
        }
        poll(waiting.data(), waiting.size(), timeoutMs);
        if ((waiting[0].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) {
            output_.close();
        }
    }

    void show(const std::optional<ShownReadout>& readout) {
        std::string next = line(options_.form, readout);
        if (hasFinished_ || next == shown_) {
            return;
        }
        write(next + '\n');
        shown_ = std::move(next);
        hasFinished_ = options_.lastLine.has_value();
    }

    void write(std::string_view text) {
        if (!options_.isSilent) {
            output_.write(text);
        }
    }

    const Options& options_;
    LineWriter output_{STDOUT_FILENO};
    std::optional<std::string> shown_;
    bool hasFinished_ = false;
    std::unique_ptr<ReadoutFollower> follower_;
    int pauseMs_ = shortestPauseMs;
};

int run(const Options& options) {
    switch (options.action) {
        case Options::Action::follow:
            return Following(options).run();
        case Options::Action::printOnce:
            return printOnce(options.form);
        case Options::Action::request:
            return sendRequest(options.request, options.place);
        case Options::Action::help:
            return print(usage);
        case Options::Action::version:
            return print("kestro-readout " KESTRO_VERSION "\n");
    }
    return EXIT_FAILURE;
}

}  // namespace

}  // namespace kestro

int main(int count, char** arguments) {
    // A reader that has gone is an ordinary end.
    std::signal(SIGPIPE, SIG_IGN);
    std::string error;
    const auto options =
        kestro::parseOptions({arguments + 1, static_cast<std::size_t>(std::max(count, 1) - 1)}, error);
    if (!options) {
        return kestro::complain(error + "; see --help", kestro::wrongUsage);
    }
    return kestro::run(*options);
}
