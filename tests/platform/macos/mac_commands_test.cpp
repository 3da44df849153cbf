#include "core/platform/power_mode_script.h"
#include "platform/macos/mac_command_runner.h"
#include "platform/macos/mac_power_mode_service.h"
#include "platform/macos/mac_script_runner.h"
#include "platform/simulated/simulated_clock.h"
#include "platform/simulated/simulated_run_loop.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <thread>

namespace kestro {
namespace {

TEST(MacCommandRunner, RunsARealChild) {
    MacCommandRunner runner;

    const auto output = runner.run("/bin/sh", {"-c", "echo out; echo error >&2; exit 3"});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "out\n");
    EXPECT_EQ(output->exitStatus, 3);
}

TEST(MacCommandRunner, HasNoOutputOfAMissingProgram) {
    MacCommandRunner runner;

    EXPECT_FALSE(runner.run("/usr/bin/no-such-program", {}));
}

TEST(MacCommandRunner, StopEndsRunningPrograms) {
    MacCommandRunner runner;
    std::optional<CommandOutput> output;
    std::thread thread([&] { output = runner.run("/bin/sh", {"-c", "echo started; exec sleep 600"}); });

    runner.stop();
    thread.join();

    ASSERT_TRUE(output);
    EXPECT_NE(output->exitStatus, 0);
}

/// A script runner whose interpreter is a shell script, and what it reports.
struct Scripts {
    TemporaryDirectory directory;
    SimulatedClock clock;
    SimulatedRunLoop runLoop{clock};
    MacPowerModeService powerModes{runLoop};

    std::string interpreter(const std::string& text) const {
        directory.write("osascript", "#!/bin/sh\n" + text + "\n");
        chmod((directory / "osascript").c_str(), 0700);
        return directory / "osascript";
    }

    std::optional<PowerModeConditions::Failure> failureAfter(const std::string& interpreterPath) {
        MacScriptRunner(powerModes, interpreterPath).execute(powerModeScript("2"));
        runLoop.runPending();
        const auto failed = powerModes.conditions().failedSwitch;
        EXPECT_TRUE(!failed || failed->mode == 2);
        return failed ? std::optional(failed->reason) : std::nullopt;
    }
};

using Failure = PowerModeConditions::Failure;

TEST(MacScriptRunner, HandsTheScriptOverAsOneArgument) {
    Scripts scripts;
    MacScriptRunner runner(scripts.powerModes,
                           scripts.interpreter("printf '%s\\n' \"$@\" >\"$(dirname \"$0\")/arguments\""));
    const std::string script = powerModeScript("2");

    runner.execute(script);

    std::ifstream file(scripts.directory / "arguments");
    const std::string arguments{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(arguments, "-s\no\n-e\n" + script + "\n");
}

TEST(MacScriptRunner, ReportsWhatBecameOfASwitch) {
    Scripts scripts;
    int reports = 0;
    scripts.powerModes.setConditionsHandler([&] { ++reports; });

    EXPECT_EQ(scripts.failureAfter(scripts.interpreter("echo 'execution error: User canceled. (-128)'; exit 1")),
              Failure::denied);
    EXPECT_EQ(scripts.failureAfter(scripts.interpreter("echo 'execution error: unknown option (64)'; exit 1")),
              Failure::rejected);
    EXPECT_EQ(scripts.failureAfter("/usr/bin/no-such-interpreter"), Failure::noService);
    EXPECT_EQ(scripts.failureAfter(scripts.interpreter("exit 0")), std::nullopt);

    EXPECT_EQ(reports, 4);
}

TEST(MacScriptRunner, ReportsNoOtherScript) {
    Scripts scripts;
    int reports = 0;
    scripts.powerModes.setConditionsHandler([&] { ++reports; });
    MacScriptRunner runner(scripts.powerModes, scripts.interpreter("exit 1"));

    runner.execute("beep");
    scripts.runLoop.runPending();

    EXPECT_EQ(reports, 0);
}

TEST(MacScriptRunner, StopEndsAScriptThatWaitsForTheUser) {
    Scripts scripts;
    MacScriptRunner runner(scripts.powerModes, scripts.interpreter("exec sleep 600"));
    std::thread thread([&] { runner.execute("wait"); });

    runner.stop();

    thread.join();
}

TEST(MacPowerModeService, OffersEveryMode) {
    Scripts scripts;

    EXPECT_EQ(scripts.powerModes.conditions().isOffered, (std::array<bool, 3>{true, true, true}));
    EXPECT_FALSE(scripts.powerModes.conditions().failedSwitch);
}

}  // namespace
}  // namespace kestro
