#include "platform/linux/process/process_table.h"

#include "tests/support/temporary_directory.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace kestro {
namespace {

/// A fake /proc with processes whose counters a test sets, and a clock that the test advances.
class ProcessTableTest : public testing::Test {
protected:
    void process(int pid, const std::string& name, double processorSeconds, std::uint64_t residentPages,
                 double startedAt = 0, const std::string& executable = {}) {
        const auto ticks = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
        const auto folder = fmt::format("proc/{}", pid);
        root.write(folder + "/stat",
                   fmt::format("{} ({}) S 1 1 1 0 -1 0 0 0 0 0 {} 0 0 0 20 0 1 0 {} 1000000 {} 1 1\n", pid, name,
                               static_cast<std::uint64_t>(processorSeconds * static_cast<double>(ticks)),
                               static_cast<std::uint64_t>(startedAt * static_cast<double>(ticks)), residentPages));
        if (!executable.empty()) {
            std::error_code ignored;
            std::filesystem::create_symlink(executable, root / (folder + "/exe"), ignored);
        }
    }

    std::vector<std::string> rows(ProcessTable::Order order) {
        std::istringstream text(table.list(order));
        std::vector<std::string> found;
        for (std::string line; std::getline(text, line);) {
            found.push_back(line);
        }
        found.erase(found.begin());
        return found;
    }

    /// Takes a listing before there are processes, so that those of the test are new in its next one.
    void listNothing() {
        ASSERT_TRUE(rows(ProcessTable::Order::processor).empty());
        now += 1;
    }

    double now = 1000;
    double suspended = 0;
    std::function<void()> whileWaiting = [] {};
    TemporaryDirectory root;
    ProcessTable table = makeTable();

private:
    ProcessTable makeTable() {
        std::filesystem::create_directories(root.path() / "proc");
        return ProcessTable(root.path().string(), {[this] { return now + suspended; }, [this] { return now; },
                                                   [this](double seconds) {
                                                       now += seconds;
                                                       whileWaiting();
                                                   }});
    }
};

std::string field(const std::string& row, int index) {
    std::istringstream text(row);
    std::string word;
    for (int i = 0; i <= index; ++i) {
        text >> word;
    }
    return word;
}

TEST_F(ProcessTableTest, MeasuresTheFirstListingOverAPause) {
    process(10, "once", 900, 100);
    process(20, "busy", 10, 100);
    whileWaiting = [this] { process(20, "busy", 10.3, 100); };

    const auto found = rows(ProcessTable::Order::processor);

    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(field(found[0], 0), "20");
    EXPECT_EQ(field(found[0], 1), "75.0");
    EXPECT_EQ(field(found[1], 1), "0.0");
    EXPECT_EQ(now, 1000.4);
}

TEST_F(ProcessTableTest, MeasuresANewProcessFromItsStart) {
    listNothing();
    process(10, "half", 50, 100, 901);

    const auto found = rows(ProcessTable::Order::processor);

    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(field(found[0], 0), "10");
    EXPECT_EQ(field(found[0], 1), "50.0");
}

TEST_F(ProcessTableTest, MeasuresBetweenTwoListings) {
    process(10, "busy", 100, 100);
    rows(ProcessTable::Order::processor);
    process(10, "busy", 103, 100);
    now += 2;

    const auto found = rows(ProcessTable::Order::processor);

    EXPECT_EQ(field(found[0], 1), "150.0");
}

TEST_F(ProcessTableTest, DoesNotCountSuspendedTime) {
    process(10, "busy", 100, 100);
    rows(ProcessTable::Order::processor);
    process(10, "busy", 101, 100);
    now += 2;
    suspended += 3600;

    const auto found = rows(ProcessTable::Order::processor);

    EXPECT_EQ(field(found[0], 1), "50.0");
}

TEST_F(ProcessTableTest, MeasuresAnewAfterALongPause) {
    process(10, "once", 100, 100);
    process(20, "busy", 10, 100);
    rows(ProcessTable::Order::processor);
    process(10, "once", 1000, 100);
    now += 1800;
    whileWaiting = [this] { process(20, "busy", 10.3, 100); };

    const auto found = rows(ProcessTable::Order::processor);

    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(field(found[0], 0), "20");
    EXPECT_EQ(field(found[0], 1), "75.0");
    EXPECT_EQ(field(found[1], 1), "0.0");
}

TEST_F(ProcessTableTest, MeasuresListingsInQuickSuccessionAgainstTheSameEarlierOne) {
    process(10, "busy", 100, 100);
    rows(ProcessTable::Order::processor);
    process(10, "busy", 101, 100);
    now += 1;
    rows(ProcessTable::Order::processor);
    process(10, "busy", 101.02, 100);
    now += 0.01;

    const auto soon = rows(ProcessTable::Order::processor);
    process(10, "busy", 101.2, 100);
    now += 0.19;
    const auto later = rows(ProcessTable::Order::processor);

    EXPECT_EQ(field(soon[0], 1), "101.0");
    EXPECT_EQ(field(later[0], 1), "100.0");
}

TEST_F(ProcessTableTest, MeasuresAgainstTheLatestListingThatIsOldEnough) {
    process(10, "busy", 100, 100);
    rows(ProcessTable::Order::processor);
    now += 1;
    rows(ProcessTable::Order::processor);
    process(10, "busy", 100.1, 100);
    now += 0.25;
    rows(ProcessTable::Order::processor);
    process(10, "busy", 100.25, 100);
    now += 0.25;

    const auto found = rows(ProcessTable::Order::processor);

    EXPECT_EQ(field(found[0], 1), "50.0");
}

TEST_F(ProcessTableTest, ASecondListingSoonAfterTheFirstSharesItsBaseline) {
    process(10, "half", 50, 100, 900);
    whileWaiting = [this] { process(10, "half", 50.2, 100, 900); };
    rows(ProcessTable::Order::processor);
    process(10, "half", 50.25, 100, 900);
    now += 0.1;

    const auto found = rows(ProcessTable::Order::processor);

    EXPECT_EQ(field(found[0], 1), "50.0");
}

TEST_F(ProcessTableTest, AReusedProcessIdIsANewProcess) {
    process(10, "old", 500, 100, 0);
    rows(ProcessTable::Order::processor);
    now = 1004;
    process(10, "new", 1, 100, 1000);

    const auto found = rows(ProcessTable::Order::processor);

    EXPECT_EQ(field(found[0], 1), "25.0");
}

TEST_F(ProcessTableTest, ACounterThatWentBackwardsReadsAsIdle) {
    process(10, "odd", 500, 100);
    rows(ProcessTable::Order::processor);
    now += 2;
    process(10, "odd", 400, 100);

    const auto found = rows(ProcessTable::Order::processor);

    EXPECT_EQ(field(found[0], 1), "0.0");
}

TEST_F(ProcessTableTest, SortsByCPUUseOrResidentMemory) {
    listNothing();
    process(10, "small", 900, 10);
    process(11, "large", 100, 5000);
    process(12, "middle", 500, 700);

    const auto byProcessor = rows(ProcessTable::Order::processor);
    const auto byMemory = rows(ProcessTable::Order::residentMemory);

    EXPECT_EQ(field(byProcessor[0], 0) + field(byProcessor[1], 0) + field(byProcessor[2], 0), "101211");
    EXPECT_EQ(field(byMemory[0], 0) + field(byMemory[1], 0) + field(byMemory[2], 0), "111210");
    EXPECT_EQ(field(byMemory[0], 3), std::to_string(5000 * sysconf(_SC_PAGESIZE) / 1024));
}

TEST_F(ProcessTableTest, ShowsTheExecutableOrElseTheKernelsName) {
    process(10, "Web Content", 1, 300, 0, "/opt/My Browser/browser (deleted)");
    process(11, "kworker/0:1-ev (x)", 1, 200);

    const auto found = rows(ProcessTable::Order::residentMemory);

    EXPECT_TRUE(found[0].ends_with(" /opt/My Browser/browser")) << found[0];
    EXPECT_TRUE(found[1].ends_with(" kworker\u22150:1-ev (x)")) << found[1];
}

TEST_F(ProcessTableTest, MeasuresAShortLivedProcessOverOneTick) {
    const double tick = 1.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
    listNothing();
    process(10, "young", tick, 100, 1001);
    now = 1001 + tick / 100;

    EXPECT_EQ(field(rows(ProcessTable::Order::processor)[0], 1), "100.0");
}

TEST_F(ProcessTableTest, AProcessWithAFutureStartReadsAsIdle) {
    listNothing();
    process(10, "future", 5, 100, 2000);

    EXPECT_EQ(field(rows(ProcessTable::Order::processor)[0], 1), "0.0");
}

TEST_F(ProcessTableTest, SanitisesAHostileNameToOneLineOfText) {
    process(10, "a\nb\xff\x1b[2J", 1, 300);

    const auto found = rows(ProcessTable::Order::processor);

    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(found[0].ends_with(" a?b\xEF\xBF\xBD?[2J")) << found[0];
}

TEST_F(ProcessTableTest, LimitsTheNumberOfRows) {
    listNothing();
    for (int pid = 1; pid <= 150; ++pid) {
        process(pid, "p", pid, 100);
    }

    const auto found = rows(ProcessTable::Order::processor);

    EXPECT_EQ(found.size(), ProcessTable::rowLimit);
    EXPECT_EQ(field(found[0], 0), "150");
}

TEST_F(ProcessTableTest, SkipsEntriesThatAreNotProcesses) {
    process(10, "real", 1, 100);
    root.write("proc/11/stat", "garbage");
    root.write("proc/12/stat", "");
    root.write("proc/self/stat", "13 (self) S 1");
    std::filesystem::create_directories(root.path() / "proc/14");

    EXPECT_EQ(rows(ProcessTable::Order::processor).size(), 1u);
}

TEST_F(ProcessTableTest, DropsAProcessThatEnded) {
    process(10, "ends", 1, 100);
    process(11, "stays", 1, 100);
    rows(ProcessTable::Order::processor);
    std::filesystem::remove_all(root.path() / "proc/10");
    now += 1;

    const auto found = rows(ProcessTable::Order::processor);

    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(field(found[0], 0), "11");
}

TEST(ProcessTable, AnUnreadableProcListsNothing) {
    const auto clock = [] { return 1000.0; };
    ProcessTable table("/nonexistent", {clock, clock, [](double) { ADD_FAILURE() << "waited for nothing"; }});

    EXPECT_EQ(table.list(ProcessTable::Order::processor), "    PID  %CPU %MEM      RSS COMM\n");
}

TEST(ProcessTable, ListsThisProcessOnTheRealMachine) {
    ProcessTable table;

    const auto text = table.list(ProcessTable::Order::residentMemory);

    EXPECT_NE(text.find("linux_tests"), std::string::npos);
}

}  // namespace
}  // namespace kestro
