#include "platform/posix/child_process.h"

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
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

#ifdef __APPLE__
const std::string ownDescriptors = "/dev/fd";
#else
const std::string ownDescriptors = "/proc/self/fd";
#endif

int openDescriptors() {
    int count = 0;
    DIR* directory = opendir(ownDescriptors.c_str());
    while (readdir(directory) != nullptr) {
        ++count;
    }
    closedir(directory);
    return count;
}

std::optional<CommandOutput> run(const std::string& executable, const std::vector<std::string>& arguments) {
    return runChild({.executable = executable, .arguments = arguments});
}

std::optional<CommandOutput> shell(const std::string& script) {
    return run("/bin/sh", {"-c", script});
}

std::optional<CommandOutput> shell(const std::string& script, std::size_t bytes, std::chrono::milliseconds time) {
    return runChild({.executable = "/bin/sh", .arguments = {"-c", script}, .outputBytes = bytes, .time = time});
}

TEST(RunChild, ReturnsTheProgramsOutputAndExitStatus) {
    const auto output = shell("printf 'a\\nb'; exit 3");

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "a\nb");
    EXPECT_EQ(output->exitStatus, 3);
}

TEST(RunChild, PassesArgumentsVerbatim) {
    const auto output = run("/usr/bin/printf", {"%s|", "two words", "$HOME", "", ";"});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "two words|$HOME||;|");
}

TEST(RunChild, AProgramThatDoesNotExistIsNotLaunched) {
    EXPECT_FALSE(run("/nonexistent/program", {}));
    EXPECT_FALSE(run("/etc/passwd", {}));
    EXPECT_FALSE(run("", {}));
}

TEST(RunChild, DrainsBothPipesWithoutDeadlock) {
    const auto output = shell("head -c 1000000 /dev/zero >&2; printf done; head -c 1000000 /dev/zero >&2");

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "done");
    EXPECT_EQ(output->exitStatus, 0);
}

TEST(RunChild, StopsAProgramThatFloodsItsOutput) {
    const auto output = shell("cat /dev/zero", 100'000, 24h);

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput.size(), 100'000u);
    EXPECT_NE(output->exitStatus, 0);
}

TEST(RunChild, StopsAProgramThatFloodsStandardError) {
    const auto output = shell("printf early; exec cat /dev/zero >&2", 100'000, 2s);

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "early");
    EXPECT_EQ(output->exitStatus, 128 + SIGKILL);
}

TEST(RunChild, StopsAProgramThatNeverEnds) {
    const auto output = shell("printf early; exec tail -f /dev/null", 1000, 2s);

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "early");
    EXPECT_EQ(output->exitStatus, 128 + SIGKILL);
}

TEST(RunChild, StopsAProgramThatClosesItsOutputAndStays) {
    const auto output = shell("exec >&- 2>&-; exec sleep 60", 1000, 2s);

    ASSERT_TRUE(output);
    EXPECT_EQ(output->exitStatus, 128 + SIGKILL);
}

TEST(RunChild, StopsADescendantThatKeepsThePipeOpen) {
    // Every process of the script holds the write end of this pipe, which hangs up when the last one ends.
    const TemporaryDirectory folder;
    const std::string pipe = folder / "alive";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const Descriptor held(open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));

    const auto output = shell("exec 3>'" + pipe + "'; sleep 600 & printf early", 1000, 2s);

    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "early");
    pollfd end{held.get(), POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 10'000), 1);
    EXPECT_NE(end.revents & POLLHUP, 0);
}

TEST(RunChild, NeitherLeaksNorPassesOnDescriptors) {
    const int before = openDescriptors();
    shell("cat /dev/zero", 1000, 2s);
    shell("exec tail -f /dev/null", 1000, 2s);
    run("/nonexistent/program", {});

    const auto listed = shell("ls " + ownDescriptors + " | wc -l");

    EXPECT_EQ(openDescriptors(), before);
    // The three standard descriptors, and the directory that ls itself has open.
    EXPECT_EQ(std::atoi(listed->standardOutput.c_str()), 4);
}

TEST(RunChild, WritesTheInput) {
    EXPECT_EQ(runChild({.executable = "/bin/cat", .arguments = {}, .input = "a\nb"})->standardOutput, "a\nb");
    EXPECT_EQ(run("/bin/cat", {})->standardOutput, "");
}

TEST(RunChild, StopsWhenTheCallerStopsWaiting) {
    int checks = 0;
    const auto output = runChild({.executable = "/bin/sh",
                                  .arguments = {"-c", "printf early; exec tail -f /dev/null"},
                                  .time = 24h,
                                  .keepWaiting = [&] { return ++checks < 3; }});

    ASSERT_TRUE(output);
    EXPECT_EQ(output->exitStatus, 128 + SIGKILL);
}

TEST(RunChild, EndsWhereChildrenLeaveNoStatus) {
    signal(SIGCHLD, SIG_IGN);

    const auto output = shell("printf done");

    signal(SIGCHLD, SIG_DFL);
    ASSERT_TRUE(output);
    EXPECT_EQ(output->standardOutput, "done");
}

TEST(RunChild, ConcurrentCallsDoNotInterfere) {
    std::vector<std::thread> threads;
    std::vector<std::string> outputs(4);

    for (std::size_t i = 0; i < outputs.size(); ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 5; ++round) {
                outputs[i] += run("/usr/bin/printf", {std::to_string(i)})->standardOutput;
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
