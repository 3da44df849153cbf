#include "platform/linux/process/process_table.h"
#include "tests/support/temporary_directory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace kestro {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

/// A fake /proc with one process.
class ProcessCommandsTest : public testing::Test {
protected:
    void process(const std::string& name, const std::string& executable, int startTicks = 0,
                 int residentPages = 7) {
        root.write("proc/10/stat",
                   fmt::format("10 ({}) S 1 1 1 0 -1 0 0 0 0 0 5 0 0 0 20 0 1 0 {} 1000000 {} 1 1\n", name,
                               startTicks, residentPages));
        fs::remove(root / "proc/10/exe");
        if (!executable.empty()) {
            fs::create_symlink(executable, root / "proc/10/exe");
        }
    }

    /// A process of another user, whose executable is not readable, with arguments separated by zero bytes.
    void otherUsersProcess(const std::string& name, const std::string& arguments) {
        process(name, "");
        root.write("proc/10/cmdline", arguments);
    }

    /// The command in the only row of a new listing.
    std::string command() {
        now += 1;
        auto text = table.list(ProcessTable::Order::processor);
        text.pop_back();
        return text.substr(text.rfind(' ') + 1);
    }

    double now = 1000;
    TemporaryDirectory root;
    ProcessTable table = makeTable();

private:
    ProcessTable makeTable() {
        fs::create_directories(root.path() / "proc");
        const auto clock = [this] { return now; };
        return ProcessTable(root.path().string(), {clock, clock, [](double) {}});
    }
};

TEST_F(ProcessCommandsTest, AreReadOnceForAProcess) {
    process("editor", "/usr/bin/editor");
    ASSERT_EQ(command(), "/usr/bin/editor");

    fs::remove(root / "proc/10/exe");

    EXPECT_EQ(command(), "/usr/bin/editor");
}

TEST_F(ProcessCommandsTest, AreReadAgainAfterAProcessHasExecutedAnother) {
    process("sh", "/usr/bin/dash");
    ASSERT_EQ(command(), "/usr/bin/dash");

    process("editor", "/usr/bin/editor");

    EXPECT_EQ(command(), "/usr/bin/editor");
}

TEST_F(ProcessCommandsTest, AreReadAgainForANewProcessWithTheSameNumber) {
    process("worker", "/usr/bin/worker");
    ASSERT_EQ(command(), "/usr/bin/worker");

    process("worker", "/opt/worker", 500);

    EXPECT_EQ(command(), "/opt/worker");
}

TEST_F(ProcessCommandsTest, AreTheFirstArgumentsOfOtherUsersPrograms) {
    otherUsersProcess("gnome-keyring-d", "/usr/bin/gnome-keyring-daemon\0--start\0"s);
    EXPECT_EQ(command(), "/usr/bin/gnome-keyring-daemon");

    otherUsersProcess("sshd", "/usr/sbin/sshd\0"s);
    EXPECT_EQ(command(), "/usr/sbin/sshd");
}

TEST_F(ProcessCommandsTest, AreTheKernelsNamesIfNoArgumentFits) {
    otherUsersProcess("postgres", "postgres: writer\0"s);
    EXPECT_EQ(command(), "postgres");

    otherUsersProcess("tool", "build/tool\0"s);
    EXPECT_EQ(command(), "tool");

    otherUsersProcess("plain", "plain\xFF\0"s);
    EXPECT_EQ(command(), "plain");

    process("kworker/0:1", "", 0, 0);
    root.write("proc/10/cmdline", "kworker/0:1\0"s);
    EXPECT_EQ(command(), "kworker\u22150:1");
}

TEST_F(ProcessCommandsTest, AreNeverEmptyNorPathsInAName) {
    for (const auto* name : {"", "   "}) {
        process(name, "");
        EXPECT_EQ(command(), "?");
    }

    process("x/ps", "");
    EXPECT_EQ(command(), "x\u2215ps");
}

TEST_F(ProcessCommandsTest, AreThePathsOfOtherUsersScripts) {
    otherUsersProcess("unattended-upgr",
                      "/usr/bin/python3\0/usr/share/unattended-upgrades/unattended-upgrade-shutdown\0--wait\0"s);
    EXPECT_EQ(command(), "/usr/share/unattended-upgrades/unattended-upgrade-shutdown");

    otherUsersProcess("firewalld", "/usr/bin/python3\0-s\0/usr/sbin/firewalld\0--nofork\0"s);
    EXPECT_EQ(command(), "/usr/sbin/firewalld");
}

TEST_F(ProcessCommandsTest, AreNotTakenFromTheArgumentsOfAProgram) {
    otherUsersProcess("updater", "/bin/sh\0./updater\0bin/updater\0"s);
    EXPECT_EQ(command(), "updater");

    otherUsersProcess("late", "/bin/sh\0-e\0-x\0/opt/late\0"s);
    EXPECT_EQ(command(), "late");
}

}  // namespace
}  // namespace kestro
