#include "platform/macos/termination_signals.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <memory>

namespace kestro {
namespace {

using fakes::FakeMac;

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

using Effect = void (*)(int);

Effect effectOf(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

/// Whatever the caller of the tests ignores.
struct TerminationSignalsTest : testing::Test {
    TerminationSignalsTest() {
        for (std::size_t index = 0; index < handled.size(); ++index) {
            former[index] = std::signal(handled[index], SIG_DFL);
        }
    }
    ~TerminationSignalsTest() override {
        for (std::size_t index = 0; index < handled.size(); ++index) {
            std::signal(handled[index], former[index]);
        }
    }

    std::array<Effect, handled.size()> former{};
};

TEST_F(TerminationSignalsTest, CallTheHandlerOnTheMainThread) {
    FakeMac mac;
    int calls = 0;
    const TerminationSignals signals([&] { ++calls; });

    for (const int signal : handled) {
        mac.dispatch.raise(signal);
    }
    EXPECT_EQ(calls, 0) << "not before the main queue runs";
    mac.runLoop.runPending();

    EXPECT_EQ(calls, 3);
}

TEST_F(TerminationSignalsTest, KeepTheProcessAliveUntilTheyAreNoLongerWatched) {
    FakeMac mac;
    auto signals = std::make_unique<TerminationSignals>([] {});
    for (const int signal : handled) {
        EXPECT_NE(effectOf(signal), SIG_DFL) << signal;
        EXPECT_NE(effectOf(signal), SIG_IGN) << signal;
    }

    signals.reset();

    for (const int signal : handled) {
        EXPECT_EQ(effectOf(signal), SIG_DFL) << signal;
    }
}

TEST_F(TerminationSignalsTest, LeaveAnIgnoredSignalIgnored) {
    FakeMac mac;
    int calls = 0;
    std::signal(SIGHUP, SIG_IGN);

    {
        const TerminationSignals signals([&] { ++calls; });
        mac.dispatch.raise(SIGHUP);
        mac.runLoop.runPending();
        EXPECT_EQ(effectOf(SIGHUP), SIG_IGN);
    }

    EXPECT_EQ(calls, 0);
}

TEST_F(TerminationSignalsTest, HoldNothingAndChangeNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac&) {},
                        [](FakeMac& mac) {
                            const bool fails = mac.everythingFails || !mac.failing.empty();
                            const TerminationSignals signals([] {});
                            EXPECT_EQ(effectOf(SIGTERM) == SIG_DFL, fails);
                        });
}

}  // namespace
}  // namespace kestro
