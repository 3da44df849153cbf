#include "tests/tools/run_tests_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace kestro {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

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

TEST_F(RunTests, KillsTheChildrenOfACrashedTest) {
    addProgram("some_tests", "Bad.CrashesAndLeavesAProcessBehind");

    run();

    EXPECT_EQ(lastLine(), "0 passed, 1 failed\n");
    EXPECT_FALSE(isAlive());
}

}  // namespace
}  // namespace kestro
