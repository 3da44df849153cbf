#include "platform/linux/process/linux_command_runner.h"

#include "platform/posix/descriptor.h"
#include "tests/support/temporary_directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <thread>

namespace kestro {
namespace {

using namespace std::chrono_literals;

int openDescriptors() {
    int count = 0;
    DIR* directory = opendir("/proc/self/fd");
    while (readdir(directory) != nullptr) {
        ++count;
    }
    closedir(directory);
    return count;
}

std::optional<CommandOutput> shell(const std::string& script, LinuxCommandRunner::Bounds bounds = {}) {
    return LinuxCommandRunner("/", bounds).run("/bin/sh", {"-c", script});
}

TEST(LinuxCommandRunner, ReturnsTheProgramsOutputAndExitStatus) {
    const auto output = shell("printf 'a\\nb'; exit 3");

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "a\nb");
    EXPECT_EQ(output->exitStatus, 3);
}

TEST(LinuxCommandRunner, PassesArgumentsVerbatim) {
    const auto output = LinuxCommandRunner().run("/usr/bin/printf", {"%s|", "two words", "$HOME", "", ";"});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "two words|$HOME||;|");
}

TEST(LinuxCommandRunner, AProgramThatDoesNotExistIsNotLaunched) {
    EXPECT_FALSE(LinuxCommandRunner().run("/nonexistent/program", {}));
    EXPECT_FALSE(LinuxCommandRunner().run("/etc/passwd", {}));
    EXPECT_FALSE(LinuxCommandRunner().run("", {}));
}

TEST(LinuxCommandRunner, DrainsBothPipesWithoutDeadlock) {
    const auto output = shell("head -c 1000000 /dev/zero >&2; printf done; head -c 1000000 /dev/zero >&2");

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "done");
    EXPECT_EQ(output->exitStatus, 0);
}

TEST(LinuxCommandRunner, StopsAProgramThatFloodsItsOutput) {
    const auto output = shell("cat /dev/zero", {100'000, 24h});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput.size(), 100'000u);
    EXPECT_NE(output->exitStatus, 0);
}

TEST(LinuxCommandRunner, StopsAProgramThatFloodsStandardError) {
    const auto output = shell("printf early; exec cat /dev/zero >&2", {100'000, 2s});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "early");
    EXPECT_EQ(output->exitStatus, 128 + SIGKILL);
}

TEST(LinuxCommandRunner, StopsAProgramThatNeverEnds) {
    const auto output = shell("printf early; exec tail -f /dev/null", {1000, 2s});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "early");
    EXPECT_EQ(output->exitStatus, 128 + SIGKILL);
}

TEST(LinuxCommandRunner, StopsAProgramThatClosesItsOutputAndStays) {
    const auto output = shell("exec >&- 2>&-; exec sleep 60", {1000, 2s});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->exitStatus, 128 + SIGKILL);
}

TEST(LinuxCommandRunner, StopsADescendantThatKeepsThePipeOpen) {
    // Every process of the script holds the write end of this pipe, which hangs up when the last one ends.
    const TemporaryDirectory folder;
    const std::string pipe = folder / "alive";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const Descriptor held(open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));

    const auto output = shell("exec 3>'" + pipe + "'; sleep 600 & printf early", {1000, 2s});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "early");
    pollfd end{held.get(), POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 10'000), 1);
    EXPECT_NE(end.revents & POLLHUP, 0);
}

TEST(LinuxCommandRunner, NeitherLeaksNorPassesOnDescriptors) {
    const LinuxCommandRunner::Bounds bounds{1000, 2s};
    const int before = openDescriptors();
    shell("cat /dev/zero", bounds);
    shell("exec tail -f /dev/null", bounds);
    LinuxCommandRunner().run("/nonexistent/program", {});

    const auto listed = shell("ls /proc/self/fd | wc -l");

    EXPECT_EQ(openDescriptors(), before);
    // The three standard descriptors, and the directory that ls itself has open.
    EXPECT_EQ(std::atoi(listed->standardOutput.c_str()), 4);
}

TEST(LinuxCommandRunner, EmulatesTheProcessToolWithoutRunningIt) {
    TemporaryDirectory root;
    root.write("proc/5/stat", "5 (one) S 1 1 1 0 -1 0 0 0 0 0 900 0 0 0 20 0 1 0 0 1000000 10 1 1\n");
    root.write("proc/6/stat", "6 (two) S 1 1 1 0 -1 0 0 0 0 0 100 0 0 0 20 0 1 0 0 1000000 90 1 1\n");
    LinuxCommandRunner runner(root.path().string(), {}, [] { return 100.0; });

    const auto byProcessor = runner.run("/bin/ps", {"-A", "-o", "pid,%cpu,%mem,rss,comm", "-r"});
    const auto byMemory = runner.run("/bin/ps", {"-A", "-m", "-o", "pid,%cpu,%mem,rss,comm"});

    ASSERT_TRUE(byProcessor && byMemory);
    EXPECT_LT(byProcessor->standardOutput.find("one"), byProcessor->standardOutput.find("two"));
    EXPECT_LT(byMemory->standardOutput.find("two"), byMemory->standardOutput.find("one"));
}

TEST(LinuxCommandRunner, ConcurrentCallsDoNotInterfere) {
    LinuxCommandRunner runner;
    std::vector<std::thread> threads;
    std::vector<std::string> outputs(4);

    for (std::size_t i = 0; i < outputs.size(); ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 5; ++round) {
                outputs[i] += runner.run("/usr/bin/printf", {std::to_string(i)})->standardOutput;
                runner.run("/bin/ps", {"-A", "-r"});
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(outputs, (std::vector<std::string>{"00000", "11111", "22222", "33333"}));
}

}  // namespace
}  // namespace kestro
