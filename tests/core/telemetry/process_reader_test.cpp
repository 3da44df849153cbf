#include "core/telemetry/process_reader.h"

#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

constexpr std::string_view header = "  PID  %CPU %MEM      RSS COMM\n";
constexpr std::int64_t many = 100;

std::vector<ProcessInfoItem> listing(std::string_view rows, std::int64_t limit = many) {
    return processesOfListing(std::string(header) + std::string(rows), limit);
}

ProcessInfoItem only(std::string_view row) {
    const auto processes = listing(row);
    EXPECT_EQ(processes.size(), 1u) << row;
    return processes.empty() ? ProcessInfoItem{} : processes.front();
}

class ProcessReaderTest : public testing::Test {
protected:
    ProcessReaderTest() { mac.freeze(); }

    std::vector<ProcessInfoItem> readOutput(std::string output) {
        mac.commandRunner.outputs["/bin/ps"] = std::move(output);
        return reader.readTopProcesses(true, many);
    }

    SimulatedMac mac;
    ProcessReader reader{mac.commandRunner};
};

TEST_F(ProcessReaderTest, TheToolSortsByCPU) {
    const auto processes = reader.readTopProcesses(true, 3);

    ASSERT_EQ(mac.commandRunner.calls().size(), 1u);
    EXPECT_EQ(mac.commandRunner.calls()[0].executable, "/bin/ps");
    EXPECT_EQ(mac.commandRunner.calls()[0].arguments,
              (std::vector<std::string>{"-A", "-o", "pid,%cpu,%mem,rss,comm", "-r"}));
    ASSERT_EQ(processes.size(), 3u);
    EXPECT_EQ(processes[0].name, "clang");
    EXPECT_EQ(processes[1].name, "WindowServer");
    EXPECT_EQ(processes[2].name, "Safari");
}

TEST_F(ProcessReaderTest, TheToolSortsByMemory) {
    const auto processes = reader.readTopProcesses(false, 2);

    EXPECT_EQ(mac.commandRunner.calls().at(0).arguments,
              (std::vector<std::string>{"-A", "-m", "-o", "pid,%cpu,%mem,rss,comm"}));
    ASSERT_EQ(processes.size(), 2u);
    EXPECT_EQ(processes[0].name, "Safari");
    EXPECT_EQ(processes[1].name, "WindowServer");
}

TEST_F(ProcessReaderTest, ListsNothingWhenTheToolCannotBeRun) {
    mac.commandRunner.failure.always();

    EXPECT_TRUE(reader.readTopProcesses(true, many).empty());
}

TEST_F(ProcessReaderTest, ListsNothingWhenTheOutputIsNotText) {
    EXPECT_TRUE(readOutput(std::string(header) + "1 2.0 0.1 1024 caf\xE9\n").empty());
    EXPECT_EQ(readOutput(std::string(header) + "1 2.0 0.1 1024 caf\xC3\xA9\n").size(), 1u);
}

TEST_F(ProcessReaderTest, ListsNothingWithoutASecondLine) {
    EXPECT_TRUE(readOutput("").empty());
    EXPECT_TRUE(readOutput("1 2.0 0.1 1024 looks-like-a-process").empty());
    EXPECT_TRUE(readOutput("1 2.0 0.1 1024 looks-like-a-process\n").empty());
}

TEST(ProcessListing, ReadsARow) {
    EXPECT_EQ(only("  501  12.5  1.5   524288 /usr/sbin/mDNSResponder\n"),
              (ProcessInfoItem{501, "mDNSResponder", "/usr/sbin/mDNSResponder", 12.5, 512, "512 MB", true}));
}

TEST(ProcessListing, NeverTreatsTheHeaderAsAProcess) {
    const auto processes = processesOfListing("1 1.0 0.0 1024 first\n2 1.0 0.0 1024 second\n", many);

    ASSERT_EQ(processes.size(), 1u);
    EXPECT_EQ(processes[0].name, "second");
}

TEST(ProcessListing, KeepsTheToolsOrderAndALastLineWithoutALineBreak) {
    const auto processes = listing("9 1.0 0.0 1024 a\n3 7.0 0.0 1024 b\n5 0.0 0.0 1024 c");

    ASSERT_EQ(processes.size(), 3u);
    EXPECT_EQ(processes[0].id, 9);
    EXPECT_EQ(processes[1].id, 3);
    EXPECT_EQ(processes[2].id, 5);
}

TEST(ProcessListing, PreservesSpacesInACommand) {
    const auto process = only("7 1.0 0.0 1024   /Applications/Photo Studio.app/Contents/MacOS/Photo  Studio  \n");

    EXPECT_EQ(process.fullCommand, "/Applications/Photo Studio.app/Contents/MacOS/Photo  Studio");
    EXPECT_EQ(process.name, "Photo  Studio");
}

TEST(ProcessListing, SkipsLinesWithFewerThanFiveFields) {
    EXPECT_TRUE(listing("\n   \n7\n7 1.0 0.0 1024\n7 1.0 0.0 1024   \n").empty());
}

TEST(ProcessListing, SkipsLinesWhoseNumbersDoNotParse) {
    EXPECT_TRUE(listing("x 1.0 0.0 1024 a\n"
                        "7x 1.0 0.0 1024 a\n"
                        "7.5 1.0 0.0 1024 a\n"
                        "99999999999 1.0 0.0 1024 a\n"
                        "7 1,0 0.0 1024 a\n"
                        "7 nan 0.0 1024 a\n"
                        "7 - 0.0 1024 a\n"
                        "7 1.0 0.0 1024K a\n"
                        "7 1.0 0.0 inf a\n")
                    .empty());
    EXPECT_EQ(listing("7 1 ? 1024.5 a\n").size(), 1u);
}

TEST(ProcessListing, ContinuesAfterASkippedLine) {
    const auto processes = listing("broken\n7 1.0 0.0 1024 a\n", 1);

    ASSERT_EQ(processes.size(), 1u);
    EXPECT_EQ(processes[0].id, 7);
}

TEST(ProcessListing, OmitsTheToolItself) {
    const auto processes = listing("7 9.0 0.0 1024 /bin/ps\n8 1.0 0.0 1024 ps\n9 1.0 0.0 1024 /usr/bin/caps\n");

    ASSERT_EQ(processes.size(), 2u);
    EXPECT_EQ(processes[0].id, 8);
    EXPECT_EQ(processes[1].id, 9);
}

TEST(ProcessListing, StopsAtTheLimit) {
    const std::string rows =
        "1 1.0 0.0 1024 a\n2 1.0 0.0 1024 b\n3 1.0 0.0 1024 c\n"
        "4 1.0 0.0 1024 d\n5 1.0 0.0 1024 e\n6 1.0 0.0 1024 f\n";

    EXPECT_EQ(listing(rows, 5).size(), 5u);
    EXPECT_EQ(listing(rows, 6).size(), 6u);
    EXPECT_EQ(listing(rows, 7).size(), 6u);
}

TEST(ProcessListing, ReturnsAtLeastOneProcessForAnyLimit) {
    EXPECT_EQ(listing("/bin\n1 1.0 0.0 1024 a\n2 1.0 0.0 1024 b\n", 0).size(), 1u);
    EXPECT_EQ(listing("1 1.0 0.0 1024 a\n2 1.0 0.0 1024 b\n", -3).size(), 1u);
    EXPECT_EQ(listing("1 1.0 0.0 1024 a\n2 1.0 0.0 1024 b\n", 1).size(), 1u);
    EXPECT_TRUE(listing("", 0).empty());
}

TEST(ProcessListing, FormatsMemoryInMegabytesOrGigabytes) {
    EXPECT_EQ(only("1 1.0 0.0 2097152 a").memoryMB, 2048);
    EXPECT_EQ(only("1 1.0 0.0 2097152 a").memoryString, "2.0 GB");
    EXPECT_EQ(only("1 1.0 0.0 1048575 a").memoryString, "1024 MB");
    EXPECT_NEAR(only("1 1.0 0.0 1048575 a").memoryMB, 1023.999, 0.001);
    EXPECT_EQ(only("1 1.0 0.0 1048576 a").memoryString, "1.0 GB");
    EXPECT_EQ(only("1 1.0 0.0 0 a").memoryString, "0 MB");
    EXPECT_EQ(only("1 1.0 0.0 1611661 a").memoryString, "1.5 GB");
}

TEST(ProcessListing, RecognisesSystemLocations) {
    EXPECT_TRUE(only("1 1.0 0.0 1 /System/Library/x").isSystemProcess);
    EXPECT_TRUE(only("1 1.0 0.0 1 /usr/libexec/x").isSystemProcess);
    EXPECT_TRUE(only("1 1.0 0.0 1 /usr/sbin/x").isSystemProcess);
    EXPECT_FALSE(only("1 1.0 0.0 1 /usr/bin/x").isSystemProcess);
    EXPECT_FALSE(only("1 1.0 0.0 1 /Volumes/System/x").isSystemProcess);
    EXPECT_FALSE(only("1 1.0 0.0 1 kernel_task").isSystemProcess);
}

TEST(ProcessDisplayName, IsTheLastPathComponentOutsideAnApplication) {
    EXPECT_EQ(processDisplayName("/usr/sbin/sshd"), "sshd");
    EXPECT_EQ(processDisplayName("kernel_task"), "kernel_task");
    EXPECT_EQ(processDisplayName("/opt/Some Helper"), "Some Helper");
    EXPECT_EQ(processDisplayName("/opt/tool/"), "tool");
    EXPECT_EQ(processDisplayName("/"), "/");
}

TEST(ProcessDisplayName, IsTheApplicationOrItsToolInsideOne) {
    EXPECT_EQ(processDisplayName("/Applications/Mail.app/Contents/MacOS/Mail"), "Mail");
    EXPECT_EQ(processDisplayName("/Applications/Mail.app/Contents/MacOS/mailtool"), "mailtool");
}

TEST(ProcessDisplayName, NamesAHelperAfterItsApplicationAndItsRole) {
    EXPECT_EQ(processDisplayName("/Applications/Mail.app/Contents/Frameworks/Mail Helper (Renderer).app/Contents/"
                                 "MacOS/Mail Helper (Renderer)"),
              "Mail (Renderer)");
    EXPECT_EQ(processDisplayName("/Applications/Mail.app/Contents/MacOS/Mail Helper"), "Mail Helper");
    EXPECT_EQ(processDisplayName("/Applications/Mail.app/Contents/MacOS/Mail Helper ()"), "Mail Helper");
    EXPECT_EQ(processDisplayName("/Applications/Mail.app/Contents/MacOS/Update Helper"), "Mail (Update Helper)");
    EXPECT_EQ(processDisplayName("/Applications/Mail.app/Contents/MacOS/Mail HelperMail Helper GPU"),
              "Mail (GPU)");
}

TEST(ProcessDisplayName, KeepsAnApplicationNamedLikeAHelper) {
    EXPECT_EQ(processDisplayName("/Applications/Helper.app/Contents/MacOS/Helper"), "Helper");
}

TEST(ProcessDisplayName, ToleratesAnApplicationWithoutAName) {
    EXPECT_EQ(processDisplayName("/.app/Helper"), " (Helper)");
    EXPECT_EQ(processDisplayName("/.app/"), ".app");
}

}  // namespace
}  // namespace kestro
