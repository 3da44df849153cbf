#include "tests/support/places.h"
#include "tests/support/temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace kestro {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

/// Runs a copy of .ci/run beside its own `dev`.
class CiRun : public testing::Test {
protected:
    CiRun() {
        fs::create_directory(folder / ".ci");
        fs::copy_file(sourceTree() + "/.ci/run", folder / ".ci/run");
    }

    void setCommand(const std::string& script) {
        folder.write("dev", "#!/bin/bash\n" + script + '\n');
        fs::permissions(folder / "dev", fs::perms::owner_all);
    }

    /// Runs `script` in the folder, and stores its output and exit status.
    void shell(const std::string& script) {
        FILE* const stream =
            popen(("export LC_ALL=C; cd '" + folder.path().string() + "' || exit; " + script).c_str(), "r");
        ASSERT_NE(stream, nullptr);
        std::array<char, 4096> piece{};
        while (std::fgets(piece.data(), piece.size(), stream) != nullptr) {
            output += piece.data();
        }
        status = WEXITSTATUS(pclose(stream));
    }

    TemporaryDirectory folder{buildTree()};
    std::string output;
    int status = 0;
};

TEST_F(CiRun, AddsUpTheTestsOfAllSteps) {
    setCommand(R"([ "$1" != test ] || echo "$# passed, 0 failed, 1 skipped")");

    shell(".ci/run 2>&1");

    EXPECT_THAT(output, EndsWith("\n6 passed, 0 failed, 3 skipped\n"));
    EXPECT_EQ(status, 0);
}

TEST_F(CiRun, StopsAtTheFirstStepThatFails) {
    setCommand(
        "if [ \"$*\" = 'test core-only' ]; then echo '2 passed, 3 failed'; exit 1; fi\n"
        "[ \"$1\" != test ] || echo '5 passed, 0 failed'");

    shell(".ci/run 2>&1");

    EXPECT_THAT(output, EndsWith("\n7 passed, 3 failed\n"));
    EXPECT_THAT(output, Not(HasSubstr("asan")));
    EXPECT_EQ(status, 1);
}

TEST_F(CiRun, CountsAStepWithoutTotalsAsOneFailure) {
    setCommand(R"([ "$1" != lint ] || exit 4; [ "$1" = lint ] || echo '5 passed, 0 failed')");

    shell(".ci/run 2>&1");

    EXPECT_THAT(output, EndsWith("\n5 passed, 1 failed\n"));
    EXPECT_EQ(status, 4);
}

TEST_F(CiRun, ASignalEndsTheStep) {
    setCommand("trap 'echo >ended; exit 143' TERM\necho >begun\nsleep 60 & wait");

    shell(
        ".ci/run >printed 2>&1 & until [ -e begun ]; do sleep 0.01; done; kill -TERM $!; wait $!; echo $?; tail "
        "-n 1 printed");

    EXPECT_EQ(output, "143\n0 passed, 1 failed\n");
    EXPECT_TRUE(fs::exists(folder / "ended"));
}

}  // namespace
}  // namespace kestro
