#include "platform/macos/mac_command_runner.h"
#include "platform/macos/mac_script_runner.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <string>
#include <thread>

namespace kestro {
namespace {

/// An interpreter that records its arguments, one a line.
std::string recordingInterpreter(const TemporaryDirectory& directory) {
    directory.write("osascript", "#!/bin/sh\nprintf '%s\\n' \"$@\" >\"$(dirname \"$0\")/arguments\"\n");
    chmod((directory / "osascript").c_str(), 0700);
    return directory / "osascript";
}

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

TEST(MacScriptRunner, HandsTheScriptOverAsOneArgument) {
    const TemporaryDirectory directory;
    MacScriptRunner runner(recordingInterpreter(directory));
    const std::string script = "do shell script \"pmset -a powermode 2\" with administrator privileges";

    runner.execute(script);

    std::ifstream file(directory / "arguments");
    const std::string arguments{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(arguments, "-e\n" + script + "\n");
}

TEST(MacScriptRunner, ToleratesAMissingInterpreter) {
    MacScriptRunner runner("/usr/bin/no-such-interpreter");

    runner.execute("beep");
}

TEST(MacScriptRunner, StopEndsAScriptThatWaitsForTheUser) {
    const TemporaryDirectory directory;
    directory.write("osascript", "#!/bin/sh\nexec sleep 600\n");
    chmod((directory / "osascript").c_str(), 0700);
    MacScriptRunner runner(directory / "osascript");
    std::thread thread([&] { runner.execute("wait"); });

    runner.stop();

    thread.join();
}

}  // namespace
}  // namespace kestro
