#include "platform/linux/process/linux_command_runner.h"

#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace kestro {
namespace {

ProcessTable::Time stoppedClocks() {
    const auto clock = [] { return 100.0; };
    return {clock, clock, [](double) {}};
}

TEST(LinuxCommandRunner, EmulatesTheProcessToolWithoutRunningIt) {
    TemporaryDirectory root;
    root.write("proc/5/stat", "5 (one) S 1 1 1 0 -1 0 0 0 0 0 900 0 0 0 20 0 1 0 0 1000000 10 1 1\n");
    root.write("proc/6/stat", "6 (two) S 1 1 1 0 -1 0 0 0 0 0 100 0 0 0 20 0 1 0 0 1000000 90 1 1\n");
    double now = 100;
    const auto clock = [&now] { return now; };
    const auto wait = [&](double seconds) {
        now += seconds;
        root.write("proc/5/stat", "5 (one) S 1 1 1 0 -1 0 0 0 0 0 930 0 0 0 20 0 1 0 0 1000000 10 1 1\n");
    };
    LinuxCommandRunner runner(root.path().string(), {clock, clock, wait});

    const auto byProcessor = runner.run("/bin/ps", {"-A", "-o", "pid,%cpu,%mem,rss,comm", "-r"});
    const auto byMemory = runner.run("/bin/ps", {"-A", "-m", "-o", "pid,%cpu,%mem,rss,comm"});

    ASSERT_TRUE(byProcessor && byMemory);
    EXPECT_LT(byProcessor->standardOutput.find("one"), byProcessor->standardOutput.find("two"));
    EXPECT_LT(byMemory->standardOutput.find("two"), byMemory->standardOutput.find("one"));
}

TEST(LinuxCommandRunner, LaunchesNoOtherProgram) {
    EXPECT_FALSE(LinuxCommandRunner().run("/bin/echo", {"word"}));
}

TEST(LinuxCommandRunner, ConcurrentCallsDoNotInterfere) {
    TemporaryDirectory root;
    root.write("proc/5/stat", "5 (one) S 1 1 1 0 -1 0 0 0 0 0 900 0 0 0 20 0 1 0 0 1000000 10 1 1\n");
    LinuxCommandRunner runner(root.path().string(), stoppedClocks());
    const auto expected = runner.run("/bin/ps", {"-A", "-r"})->standardOutput;
    std::vector<std::thread> threads;
    std::vector<int> equal(4);

    for (int& count : equal) {
        threads.emplace_back([&runner, &expected, &count] {
            for (int round = 0; round < 50; ++round) {
                count += runner.run("/bin/ps", {"-A", "-r"})->standardOutput == expected ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(equal, (std::vector<int>{50, 50, 50, 50}));
}

}  // namespace
}  // namespace kestro
