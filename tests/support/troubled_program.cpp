#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

// Tests that the runner of the tests has to handle; its own tests run a few of them at a time.
namespace kestro {
namespace {

TEST(Fine, Passes) {}

TEST(Fine, PassesToo) {
    std::cout << "half a line";
}

TEST(Fine, PrintsWhatAnotherProgramPrinted) {
    std::cout << "[ RUN      ] Other.Passes\n[       OK ] Other.Passes (0 ms)\n[  FAILED  ] Other.Fails (0 ms)\n"
                 "[==========] 2 tests from 1 test suite ran. (0 ms total)\n";
}

TEST(Fine, IsSkipped) {
    GTEST_SKIP() << "not here";
}

TEST(Bad, Fails) {
    std::cout << "before it fails\n";
    EXPECT_EQ(1 + 1, 3) << "as it should";
}

TEST(Bad, Crashes) {
    std::cerr << "about to crash\n";
    std::abort();
}

TEST(Bad, Exits) {
    std::_Exit(0);
}

/// Atomic, because the reader waits for the file.
void leaveIdentifier(pid_t process) {
    std::ofstream("pid.new") << process;
    std::filesystem::rename("pid.new", "pid");
}

TEST(Bad, Hangs) {
    leaveIdentifier(getpid());
    for (;;) {
        pause();
    }
}

TEST(Bad, CrashesAndLeavesAProcessBehind) {
    const pid_t child = fork();
    if (child == 0) {
        execlp("sleep", "sleep", "600", nullptr);
    }
    leaveIdentifier(child);
    std::abort();
}

TEST(Late, ExitsWithAnotherStatus) {
    std::atexit([] {
        std::cerr << "==1==ERROR: LeakSanitizer: detected memory leaks\n    #0 in leak()\n";
        std::_Exit(23);
    });
}

TEST(Late, WaitsForAFile) {
    while (!std::filesystem::exists("go-on")) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

class Parametrised : public testing::TestWithParam<const char*> {};

TEST_P(Parametrised, IsNoStar) {
    EXPECT_STRNE(GetParam(), "*");
}

INSTANTIATE_TEST_SUITE_P(Some, Parametrised, testing::Values("a", "*"));

}  // namespace
}  // namespace kestro
