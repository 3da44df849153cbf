#include "tests/tools/run_tests_fixture.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace kestro {
namespace {

namespace fs = std::filesystem;

using testing::Eq;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

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
