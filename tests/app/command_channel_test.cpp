#include "app/command_channel.h"

#include "platform/simulated/simulated_mac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kestro {
namespace {

using testing::InSequence;
using testing::StrictMock;

class MockCommandTarget : public CommandTarget {
public:
    MOCK_METHOD(void, togglePopover, (), (override));
    MOCK_METHOD(void, showDashboard, (), (override));
    MOCK_METHOD(void, showSettings, (), (override));
    MOCK_METHOD(void, selectSettingsTab, (SettingsTab), (override));
    MOCK_METHOD(void, toggleFanLink, (), (override));
    MOCK_METHOD(void, selectFan, (std::int64_t), (override));
    MOCK_METHOD(void, selectCurvePreset, (CurvePreset), (override));
    MOCK_METHOD(void, toggleFullScreenAction, (), (override));
    MOCK_METHOD(void, showDashboard, (QSize), (override));
    MOCK_METHOD(void, hideDashboard, (), (override));
};

const std::string file = "/commands";

struct CommandChannelTest : testing::Test {
    SimulatedMac mac;
    StrictMock<MockCommandTarget> target;

    void write(const std::string& text) {
        mac.fileEvents.write(file, text);
        mac.runPending();
    }
};

using CommandWords = CommandChannelTest;

TEST_F(CommandWords, ShowAndHideWindows) {
    InSequence inSequence;
    EXPECT_CALL(target, togglePopover());
    EXPECT_CALL(target, showDashboard());
    EXPECT_CALL(target, showSettings());
    EXPECT_CALL(target, hideDashboard());

    for (const char* word : {"popover", "dashboard", "settings", "hide"}) {
        EXPECT_TRUE(performCommand(word, target));
    }
}

TEST_F(CommandWords, SelectATabBeforeShowingTheSettings) {
    const std::pair<const char*, SettingsTab> words[] = {
        {"settings-sensors", SettingsTab::sensors}, {"settings-dashboard", SettingsTab::dashboard},
        {"settings-menubar", SettingsTab::menubar}, {"settings-keepawake", SettingsTab::keepAwake},
        {"settings-cooling", SettingsTab::cooling}, {"settings-power", SettingsTab::power},
    };
    for (const auto& [word, tab] : words) {
        InSequence inSequence;
        EXPECT_CALL(target, selectSettingsTab(tab));
        EXPECT_CALL(target, showSettings());

        EXPECT_TRUE(performCommand(word, target)) << word;
    }
}

TEST_F(CommandWords, ControlTheFans) {
    InSequence inSequence;
    EXPECT_CALL(target, toggleFanLink());
    EXPECT_CALL(target, selectFan(0));
    EXPECT_CALL(target, selectFan(1));
    EXPECT_CALL(target, selectCurvePreset(CurvePreset::quietStudio));

    for (const char* word : {"toggle-fan-link", "select-fan-0", "select-fan-1", "preset-quiet"}) {
        EXPECT_TRUE(performCommand(word, target));
    }
}

TEST_F(CommandWords, ResizeTheDashboard) {
    InSequence inSequence;
    EXPECT_CALL(target, toggleFullScreenAction());
    EXPECT_CALL(target, showDashboard(QSize(1500, 750)));
    EXPECT_CALL(target, showDashboard(QSize(800, 460)));

    for (const char* word : {"dashboard-fullscreen", "dashboard-resize", "dashboard-shrink"}) {
        EXPECT_TRUE(performCommand(word, target));
    }
}

TEST_F(CommandWords, MatchExactly) {
    for (const char* word : {"", "Settings", "POPOVER", "popover hide", "popover\nhide", "pop",
                             "settings-appearance", "select-fan-2"}) {
        EXPECT_FALSE(performCommand(word, target)) << word;
    }
}

TEST(CommandWord, IsTrimmedAtBothEnds) {
    EXPECT_EQ(commandWord("popover"), "popover");
    EXPECT_EQ(commandWord(" \t\r\n popover \v\f\n"), "popover");
    EXPECT_EQ(commandWord("\u00a0popover\u2003\u2028"), "popover");
    EXPECT_EQ(commandWord("popover\nhide\n"), "popover\nhide");
    EXPECT_EQ(commandWord("\ufeffpopover"), "\ufeffpopover");
}

TEST(CommandWord, IsEmptyInBlankOrUndecodableBytes) {
    using namespace std::string_view_literals;

    EXPECT_EQ(commandWord(""), "");
    EXPECT_EQ(commandWord(" \n"), "");
    EXPECT_EQ(commandWord("popover\xff"), "");
    EXPECT_EQ(commandWord("\xc3"), "");
    EXPECT_EQ(commandWord("\xed\xa0\x80popover"), "");
    EXPECT_EQ(commandWord("\0popover"sv), std::string("\0popover"sv));
}

TEST_F(CommandChannelTest, CreatesTheFileEmpty) {
    const CommandChannel channel(mac.fileEvents, target, file);

    EXPECT_EQ(mac.fileEvents.contents(file), "");
}

TEST_F(CommandChannelTest, LeavesAnExistingFileAlone) {
    mac.fileEvents.write(file, "popover");

    const CommandChannel channel(mac.fileEvents, target, file);

    EXPECT_EQ(mac.fileEvents.contents(file), "popover");
}

TEST_F(CommandChannelTest, PerformsAWordOnceAndEmptiesTheFile) {
    const CommandChannel channel(mac.fileEvents, target, file);
    EXPECT_CALL(target, togglePopover()).Times(1);

    write("popover\n");

    EXPECT_EQ(mac.fileEvents.contents(file), "");
}

TEST_F(CommandChannelTest, EmptiesTheFileBeforePerformingTheWord) {
    const CommandChannel channel(mac.fileEvents, target, file);
    EXPECT_CALL(target, showDashboard()).WillOnce([this] { EXPECT_EQ(mac.fileEvents.contents(file), ""); });

    write("dashboard");
}

TEST_F(CommandChannelTest, DiscardsAnUnknownWord) {
    const CommandChannel channel(mac.fileEvents, target, file);

    write("Settings\n");

    EXPECT_EQ(mac.fileEvents.contents(file), "");
}

TEST_F(CommandChannelTest, DiscardsAFileThatIsTooLong) {
    const CommandChannel channel(mac.fileEvents, target, file);

    for (const std::string& tail : {std::string("text"), std::string("\xff")}) {
        write("popover" + std::string(FileEvents::longestRead, ' ') + tail);

        EXPECT_EQ(mac.fileEvents.contents(file), "");
    }
    write(std::string(FileEvents::longestRead + 1, '\xff'));

    EXPECT_EQ(mac.fileEvents.contents(file), "");
}

TEST_F(CommandChannelTest, PerformsAWordFollowedByManyBlanks) {
    const CommandChannel channel(mac.fileEvents, target, file);
    EXPECT_CALL(target, togglePopover());
    std::string text = "popover";
    text.resize(FileEvents::longestRead - 1, ' ');

    write(text);

    EXPECT_EQ(mac.fileEvents.contents(file), "");
}

TEST_F(CommandChannelTest, LeavesABlankFileUnchanged) {
    const CommandChannel channel(mac.fileEvents, target, file);

    write(" \n");

    EXPECT_EQ(mac.fileEvents.contents(file), " \n");
}

TEST_F(CommandChannelTest, LeavesBytesThatAreNotTextUnchanged) {
    const CommandChannel channel(mac.fileEvents, target, file);

    write("popover\xff");

    EXPECT_EQ(mac.fileEvents.contents(file), "popover\xff");
}

TEST_F(CommandChannelTest, IgnoresAFileThatCannotBeRead) {
    const CommandChannel channel(mac.fileEvents, target, file);
    mac.fileEvents.readFailure.always();

    write("popover");

    EXPECT_EQ(mac.fileEvents.contents(file), "popover");
}

TEST_F(CommandChannelTest, PerformsTheWordEvenWhenTheFileCannotBeEmptied) {
    const CommandChannel channel(mac.fileEvents, target, file);
    mac.fileEvents.truncateFailure.always();
    EXPECT_CALL(target, showSettings());

    write("settings");
}

TEST_F(CommandChannelTest, PerformsOnlyTheWordPresentWhenTheFileIsRead) {
    const CommandChannel channel(mac.fileEvents, target, file);
    EXPECT_CALL(target, hideDashboard()).Times(1);

    mac.fileEvents.write(file, "popover");
    mac.fileEvents.write(file, "hide");
    mac.runPending();
}

TEST_F(CommandChannelTest, PerformsAThousandWordsInTurn) {
    const CommandChannel channel(mac.fileEvents, target, file);
    EXPECT_CALL(target, togglePopover()).Times(1000);

    for (int word = 0; word < 1000; ++word) {
        write("popover");
    }
}

TEST_F(CommandChannelTest, ToleratesAFileThatCannotBeWatched) {
    mac.fileEvents.watchFailure.always();
    const CommandChannel channel(mac.fileEvents, target, file);

    write("popover");

    EXPECT_EQ(mac.fileEvents.watches(), 0);
}

TEST_F(CommandChannelTest, StopsWhenDestroyed) {
    {
        const CommandChannel channel(mac.fileEvents, target, file);
        mac.fileEvents.write(file, "popover");
    }
    mac.runPending();

    EXPECT_EQ(mac.fileEvents.watches(), 0);
}

}  // namespace
}  // namespace kestro
