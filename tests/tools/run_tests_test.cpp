#include "tests/support/places.h"
#include "tests/support/temporary_directory.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

namespace kestro {
namespace {

using testing::EndsWith;
using testing::Eq;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

/// Runs tools/run_tests.sh in a temporary folder with its own test programs.
class RunTests : public testing::Test {
protected:
    RunTests() { folder.write("tests/hostile_environment", "LC_ALL=de_DE.UTF-8\n"); }

    /// Adds a program with these tests of the troubled program.
    void addProgram(const std::string& name, const std::string& filter) {
        addScript(name,
                  "exec '" + buildTree() + "/tests/troubled_program' --gtest_filter='" + filter + "' \"$@\"");
    }

    void addScript(const std::string& name, const std::string& script) {
        folder.write("build/fake/tests/" + name, "#!/bin/sh\n" + script + '\n');
        fs::permissions(folder / ("build/fake/tests/" + name), fs::perms::owner_all);
    }

    /// Runs `script`, where $run is the runner, and stores its output and status. Shells print warnings in a
    /// locale that is not installed.
    void shell(const std::string& script) {
        const std::string command = "export LC_ALL=C && cd '" + folder.path().string() +
                                    "' && exec 2>errors && run='" + sourceTree() + "/tools/run_tests.sh' && " +
                                    script;
        FILE* const stream = popen(command.c_str(), "r");
        ASSERT_NE(stream, nullptr);
        std::array<char, 4096> piece{};
        while (std::fgets(piece.data(), piece.size(), stream) != nullptr) {
            output += piece.data();
        }
        status = pclose(stream);
        std::ostringstream text;
        text << std::ifstream(folder / "errors").rdbuf();
        errors = text.str();
    }

    void run(const std::string& arguments = "") { shell("\"$run\" fake " + arguments); }

    /// Whether the process in the file "pid" runs. A zombie has no command line.
    bool isAlive() const {
        std::string pid;
        std::ifstream(folder / "pid") >> pid;
        EXPECT_NE(pid, "");
        std::ifstream commandLine("/proc/" + pid + "/cmdline");
        return commandLine.peek() != std::ifstream::traits_type::eof();
    }

    std::string lastLine() const {
        const auto start = output.rfind('\n', output.size() - 2);
        return output.substr(start == output.npos ? 0 : start + 1);
    }

    // Beside the test programs, since programs in /tmp may be forbidden.
    TemporaryDirectory folder{buildTree()};
    std::string output;
    std::string errors;
    int status = 0;
};

TEST_F(RunTests, PrintsALinePerProgramAndTheTotals) {
    addProgram("first_tests", "Fine.Passes*");
    addProgram("second_tests", "Fine.Passes");

    run();

    EXPECT_THAT(output, MatchesRegex("(first|second)_tests +[12] passed, 0 failed, [0-9.]+ s\n"
                                     "(first|second)_tests +[12] passed, 0 failed, [0-9.]+ s\n"
                                     "3 passed, 0 failed\n"));
    EXPECT_EQ(errors, "");
    EXPECT_EQ(status, 0);
}

TEST_F(RunTests, CountsSkippedTestsApart) {
    addProgram("some_tests", "Fine.Passes:Fine.IsSkipped");

    run();

    EXPECT_THAT(output, MatchesRegex("some_tests +1 passed, 0 failed, 1 skipped, [0-9.]+ s\n"
                                     "1 passed, 0 failed, 1 skipped\n"));
    EXPECT_EQ(status, 0);
}

TEST_F(RunTests, PrintsAFailedTestAsTheProgramDoes) {
    addProgram("some_tests", "Fine.Passes*:Bad.Fails");

    run();

    EXPECT_THAT(errors, MatchesRegex("--- some_tests\n"
                                     "\\[ RUN      \\] Bad.Fails\n"
                                     "before it fails\n"
                                     ".*troubled_program.cpp:[0-9]+: Failure\n"
                                     ".*as it should\n+"
                                     "\\[  FAILED  \\] Bad.Fails \\([0-9]+ ms\\)\n"));
    EXPECT_EQ(lastLine(), "2 passed, 1 failed\n");
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(RunTests, PrintsAFailedTestAtOnce) {
    addProgram("some_tests", "Bad.Fails:Late.WaitsForAFile");

    shell(
        "{ \"$run\" fake 2>&1; } | while read -r line; do echo \"$line\"; "
        "case $line in '[  FAILED  ]'*) : >go-on ;; esac; done");

    EXPECT_EQ(lastLine(), "1 passed, 1 failed\n");
}

TEST_F(RunTests, CountsTestsWithParameters) {
    addProgram("some_tests", "*Parametrised*");

    run();

    EXPECT_THAT(errors, HasSubstr("[  FAILED  ] Some/Parametrised.IsNoStar/1, where GetParam() = "));
    EXPECT_EQ(lastLine(), "1 passed, 1 failed\n");
}

TEST_F(RunTests, IgnoresTheTestsOfAnotherProgram) {
    addProgram("some_tests", "Fine.PrintsWhatAnotherProgramPrinted:Fine.Passes");

    run();

    EXPECT_EQ(output.substr(output.find('\n') + 1), "2 passed, 0 failed\n") << errors;
}

TEST_F(RunTests, NamesTheTestThatCrashed) {
    addProgram("some_tests", "Fine.Passes:Bad.Crashes");

    run();

    EXPECT_EQ(errors,
              "--- some_tests: killed by SIGABRT, in Bad.Crashes\n"
              "[ RUN      ] Bad.Crashes\n"
              "about to crash\n");
    EXPECT_EQ(lastLine(), "1 passed, 1 failed\n");
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(RunTests, KillsAProgramThatHangs) {
    addProgram("some_tests", "Fine.Passes:Bad.Hangs");

    run("all 5");

    EXPECT_EQ(errors,
              "--- some_tests: timed out after 5 s, in Bad.Hangs\n"
              "[ RUN      ] Bad.Hangs\n");
    EXPECT_EQ(lastLine(), "1 passed, 1 failed\n");
}

TEST_F(RunTests, CountsAnEarlyExitAsAFailure) {
    addProgram("some_tests", "Fine.Passes:Bad.Exits");

    run();

    EXPECT_THAT(errors,
                HasSubstr("--- some_tests: exited with status 0 before its tests finished, in Bad.Exits\n"));
    EXPECT_EQ(lastLine(), "1 passed, 1 failed\n");
}

TEST_F(RunTests, CountsASanitizerReportAtExitAsAFailure) {
    addProgram("some_tests", "Fine.Passes:Late.ExitsWithAnotherStatus");

    run();

    EXPECT_THAT(errors, StartsWith("--- some_tests: sanitizer report, exited with status 23\n"));
    EXPECT_THAT(errors, EndsWith("==1==ERROR: LeakSanitizer: detected memory leaks\n    #0 in leak()\n"));
    EXPECT_EQ(lastLine(), "2 passed, 1 failed\n");
}

TEST_F(RunTests, CountsAnUnexplainedStatusAsAFailure) {
    addScript("some_tests",
              "echo '[==========] Running 1 test from 1 test suite.'\n"
              "echo '[ RUN      ] A.B'\necho '[       OK ] A.B (0 ms)'\n"
              "echo '[==========] 1 test from 1 test suite ran. (0 ms total)'\nexit 3");

    run();

    EXPECT_THAT(errors, HasSubstr("--- some_tests: exited with status 3 after its tests\n"));
    EXPECT_EQ(lastLine(), "1 passed, 1 failed\n");
}

TEST_F(RunTests, CountsAMissingTestAsAFailure) {
    addScript("some_tests",
              "echo '[ RUN      ] A.B'\necho '[       OK ] A.B (0 ms)'\n"
              "echo '[==========] 2 tests from 1 test suite ran. (0 ms total)'");

    run();

    EXPECT_THAT(errors, HasSubstr("--- some_tests: ran 2 tests, but 1 finished\n"));
    EXPECT_EQ(lastLine(), "1 passed, 1 failed\n");
}

TEST_F(RunTests, CountsAProgramWithoutTestsAsAFailure) {
    addProgram("some_tests", "None.*");

    run();

    EXPECT_EQ(errors, "--- some_tests: ran no test\n");
    EXPECT_EQ(lastLine(), "0 passed, 1 failed\n");
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(RunTests, CountsAKilledWatcherAsAFailure) {
    addScript("some_tests",
              "parent() { cut -d ' ' -f 4 /proc/$1/stat; }\n"
              "kill -KILL $(parent $(parent $PPID))");

    run();

    EXPECT_THAT(errors, HasSubstr("--- some_tests: its watcher exited with status 137\n"));
    EXPECT_EQ(lastLine(), "0 passed, 1 failed\n");
}

TEST_F(RunTests, RefusesASecondRunInTheSameFolder) {
    addProgram("some_tests", "Fine.Passes");

    shell("exec 8>build/fake/tests.lock && flock 8 && \"$run\" fake");

    EXPECT_EQ(errors, "dev: another run tests build/fake\n");
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(RunTests, IgnoresTheCallersSettingsOfTheTestFramework) {
    addProgram("some_tests", "Fine.Passes*");

    shell("GTEST_REPEAT=2 GTEST_OUTPUT=xml \"$run\" fake");

    EXPECT_EQ(lastLine(), "2 passed, 0 failed\n") << errors;
    EXPECT_FALSE(fs::exists(folder / "test_detail.xml"));
}

TEST_F(RunTests, RemovesTheTemporaryFilesOfTheTests) {
    addScript("some_tests", "mkdir \"${TMPDIR:?}/left\" && echo \"$TMPDIR\" >place");

    run();

    std::string place;
    std::ifstream(folder / "place") >> place;
    EXPECT_THAT(place, testing::StartsWith("/tmp/kestro-tests-"));
    EXPECT_FALSE(fs::exists(place));
}

TEST_F(RunTests, FailsWithoutPrograms) {
    run();

    EXPECT_EQ(output, "");
    EXPECT_EQ(errors, "dev: no test programs in build/fake/tests\n");
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST_F(RunTests, AddsUpTheShardsOfTheEndToEndTests) {
    addProgram("desktop_tests", "Fine.*:Bad.Fails");

    run();

    EXPECT_THAT(output, MatchesRegex("desktop_tests +3 passed, 1 failed, 1 skipped, [0-9.]+ s\n"
                                     "3 passed, 1 failed, 1 skipped\n"));
}

TEST_F(RunTests, ExcludesTheEndToEndTestsFromTheUnits) {
    addProgram("desktop_tests", "Bad.Fails");
    addProgram("drill_tests", "Bad.Fails");
    addProgram("some_tests", "Fine.Passes");

    run("units");

    EXPECT_THAT(output, Not(HasSubstr("desktop_tests")));
    EXPECT_THAT(output, Not(HasSubstr("drill_tests")));
    EXPECT_EQ(lastLine(), "1 passed, 0 failed\n");
}

TEST_F(RunTests, CountsUpOnATerminalOnly) {
    addProgram("some_tests", "Fine.Passes*");

    run();
    EXPECT_THAT(output + errors, Not(HasSubstr("\r")));

    if (const int terminal = posix_openpt(O_RDWR | O_NOCTTY); terminal >= 0) {
        close(terminal);
    } else {
        GTEST_SKIP() << "no terminal can be opened here";
    }
    shell("script --quiet --command \"'$run' fake\" /dev/null");
    EXPECT_THAT(output, HasSubstr("\r\033[K1 tests, 0 failed, some_tests, "));
    EXPECT_THAT(lastLine(), Eq("\r\033[K2 passed, 0 failed\r\n"));
}

TEST_F(RunTests, KillsTheChildrenOfACrashedTest) {
    addProgram("some_tests", "Bad.CrashesAndLeavesAProcessBehind");

    run();

    EXPECT_EQ(lastLine(), "0 passed, 1 failed\n");
    EXPECT_FALSE(isAlive());
}

TEST_F(RunTests, LeavesNoProcessBehindWhenStopped) {
    addProgram("some_tests", "Bad.Hangs");

    for (const auto& [signal, expected] : {std::pair("TERM", "143\n"), std::pair("INT", "130\n")}) {
        output.clear();
        shell(std::string("rm -f pid; env --default-signal=INT \"$run\" fake & ") +
              "until [ -s pid ]; do sleep 0.01; done; kill -" + signal + " $!; wait $!; echo $?");
        EXPECT_EQ(output, expected);
        EXPECT_EQ(errors, "dev: stopping the tests\n");
        EXPECT_FALSE(isAlive());
    }
}

}  // namespace
}  // namespace kestro
