#include "shell/macos/menu_translation.h"

#include "app/menus/shortcuts.h"

#include <gtest/gtest.h>

#include <memory>

namespace kestro {
namespace {

TEST(KeyEquivalent, HasTheModifiersOfAMac) {
    EXPECT_EQ(keyEquivalent(QStringLiteral("Ctrl+D")), (KeyEquivalent{"d", commandModifier}));
    EXPECT_EQ(keyEquivalent(QStringLiteral("Ctrl+,")), (KeyEquivalent{",", commandModifier}));
    EXPECT_EQ(keyEquivalent(QStringLiteral("Ctrl+Meta+F")), (KeyEquivalent{"f", 0x140000}));
    EXPECT_EQ(keyEquivalent(QStringLiteral("Ctrl+Alt+Shift+9")),
              (KeyEquivalent{"9", commandModifier | optionModifier | shiftModifier}));
}

TEST(KeyEquivalent, IsAbsentWithoutACharacter) {
    for (const auto* const shortcut : {"", "F11", "Ctrl+Return", "Ctrl+K, Ctrl+C"}) {
        EXPECT_EQ(keyEquivalent(QString::fromLatin1(shortcut)).key, "") << shortcut;
    }
}

TEST(KeyEquivalent, ExistsForEveryCommandOfTheMenu) {
    for (const QString& shortcut : {shortcuts::toggleDashboard, shortcuts::toggleFullScreen,
                                    shortcuts::openSettings, shortcuts::togglePin, shortcuts::quit}) {
        EXPECT_NE(keyEquivalent(shortcut).key, "") << shortcut.toStdString();
    }
}

TEST(NativeMenu, ShowsWhatTheEntriesSay) {
    MenuEntry checked = MenuEntry::command(QStringLiteral("15 & more _minutes"), {});
    checked.isChecked = true;
    checked.symbol = QStringLiteral("leaf.fill");
    const auto native = nativeMenu({MenuEntry::header(QStringLiteral("Kestro Telemetry")), MenuEntry::separator(),
                                    MenuEntry::opening(QStringLiteral("Keep Awake"), {checked}),
                                    MenuEntry::command(QStringLiteral("Quit"), {}, QStringLiteral("Ctrl+Q"))})
                            .entries;

    ASSERT_EQ(native.size(), 4U);
    EXPECT_EQ(native[0].title, "Kestro Telemetry");
    EXPECT_FALSE(native[0].isEnabled);
    EXPECT_TRUE(native[1].isSeparator);
    ASSERT_EQ(native[2].submenu.size(), 1U);
    EXPECT_EQ(native[2].submenu[0].title, "15 & more _minutes");
    EXPECT_EQ(native[2].submenu[0].symbol, "leaf.fill");
    EXPECT_TRUE(native[2].submenu[0].isChecked);
    EXPECT_EQ(native[3].keyEquivalent, (KeyEquivalent{"q", commandModifier}));
    EXPECT_TRUE(native[3].isEnabled);
}

TEST(NativeMenu, RunsTheActionOfTheChosenEntry) {
    int inner = 0;
    int last = 0;
    const auto native =
        nativeMenu({MenuEntry::header(QStringLiteral("Header")), MenuEntry::separator(),
                    MenuEntry::opening(QStringLiteral("Submenu"),
                                       {MenuEntry::command(QStringLiteral("Inner"), [&] { ++inner; })}),
                    MenuEntry::command(QStringLiteral("Last"), [&] { ++last; })});

    native.choose(native.entries[2].submenu[0].number);
    EXPECT_EQ(inner, 1);
    EXPECT_EQ(last, 0);
    native.choose(native.entries[3].number);

    EXPECT_EQ(inner, 1);
    EXPECT_EQ(last, 1);
}

TEST(NativeMenu, IgnoresEntriesWithoutAnAction) {
    const auto native = nativeMenu({MenuEntry::header(QStringLiteral("Header"))});

    native.choose(native.entries[0].number);
    native.choose(7);
}

TEST(NativeMenu, KeepsItsActionsUntilTheyAreNoLongerNeeded) {
    const auto witness = std::make_shared<int>(0);
    std::function<void(std::size_t)> choose;
    {
        choose = nativeMenu({MenuEntry::command(QStringLiteral("Count"), [witness] { ++*witness; })}).choose;
    }

    choose(0);
    EXPECT_EQ(*witness, 1);
    choose = nullptr;

    EXPECT_EQ(witness.use_count(), 1);
}

}  // namespace
}  // namespace kestro
