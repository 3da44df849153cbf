#include "shell/macos/mac_status_bar.h"

#include "tests/shell/macos/fake_app_kit.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kestro {
namespace {

struct MacStatusBarTest : testing::Test {
    test::FakeMenuBar menuBar;
    MacStatusBar bar{menuBar.factory()};
    std::unique_ptr<StatusItem> item;

    test::FakeMenuBar::Item& native() { return menuBar.items.at("kestro-main"); }
    void create(StatusItemHandlers handlers) {
        item = bar.createItem(QStringLiteral("kestro-main"), std::move(handlers));
    }
    void createWithClick(std::function<void(StatusClick, bool, const QRect&)> onClick) {
        create({.onClick = std::move(onClick), .buildMenu = {}});
    }
    void createWithMenu(std::function<Menu()> buildMenu) {
        create({.onClick = {}, .buildMenu = std::move(buildMenu)});
    }
    static Menu menuWith(std::function<void()> action) {
        return {MenuEntry::command(QStringLiteral("Entry"), std::move(action))};
    }
    static int screenHeight() { return QGuiApplication::primaryScreen()->geometry().height(); }
};

TEST_F(MacStatusBarTest, AddsAnItemUntilItIsDestroyed) {
    create({});
    EXPECT_TRUE(menuBar.items.contains("kestro-main"));

    item.reset();

    EXPECT_TRUE(menuBar.items.empty());
}

TEST_F(MacStatusBarTest, ShowsNewContentOnly) {
    create({});
    StatusContent content;
    content.title.text = QStringLiteral("RAM 42%");

    item->setContent(content);
    item->setContent(content);
    EXPECT_EQ(native().shown.size(), 1U);
    content.glance = StatusGlance{42, 7};
    content.widestTitle = QStringLiteral("RAM 100%");
    item->setContent(content);
    EXPECT_EQ(native().shown.size(), 1U) << "neither is visible in the menu bar";
    content.title.text = QStringLiteral("RAM 43%");
    item->setContent(content);

    ASSERT_EQ(native().shown.size(), 2U);
    EXPECT_EQ(native().shown.back().title, "RAM 43%");
}

TEST_F(MacStatusBarTest, ReportsClicksWithTheItemsArea) {
    std::vector<StatusClick> clicks;
    bool wasControlHeld = false;
    QRect place;
    createWithClick([&](StatusClick click, bool controlHeld, const QRect& anchor) {
        clicks.push_back(click);
        wasControlHeld = controlHeld;
        place = anchor;
    });
    native().frame = NativeRect{100, screenHeight() - 24.0, 80, 24};

    native().onClick({});
    EXPECT_FALSE(wasControlHeld);
    EXPECT_EQ(place, QRect(100, 0, 80, 24));
    native().onClick({.isSecondary = true, .controlHeld = true});

    EXPECT_EQ(clicks, (std::vector{StatusClick::primary, StatusClick::secondary}));
    EXPECT_TRUE(wasControlHeld);
    EXPECT_EQ(item->geometry(), place);
}

TEST_F(MacStatusBarTest, HasNoAreaWithoutAWindow) {
    create({});

    EXPECT_TRUE(item->geometry().isNull());
}

TEST_F(MacStatusBarTest, AnyClickOpensTheMenuOfAnItemWithoutAClickHandler) {
    int built = 0;
    createWithMenu([&] {
        ++built;
        return menuWith({});
    });

    native().onClick({});
    native().onClick({.isSecondary = true});

    EXPECT_EQ(built, 2) << "afresh for each click";
    ASSERT_TRUE(native().menu);
    EXPECT_EQ(native().menu->entries.size(), 1U);
    EXPECT_FALSE(native().menuPosition);
}

TEST_F(MacStatusBarTest, OpensTheMenuAtAPosition) {
    createWithMenu([] { return menuWith({}); });

    item->openMenu(QPoint(10, 30));

    EXPECT_EQ(native().menuPosition, (NativePoint{10, screenHeight() - 30.0}));
}

TEST_F(MacStatusBarTest, OpensNoEmptyMenu) {
    createWithMenu([] { return Menu(); });

    item->openMenu();

    EXPECT_FALSE(native().menu);
}

TEST_F(MacStatusBarTest, MayLoseItsItemWhileItsMenuIsOpen) {
    int chosen = 0;
    createWithMenu([&] { return menuWith([&] { ++chosen; }); });
    std::optional<NativeMenu> open;
    menuBar.whileMenuIsOpen = [&] {
        open = native().menu;
        item.reset();
    };

    native().onClick({});
    open->choose(open->entries[0].number);

    EXPECT_EQ(chosen, 1);
    EXPECT_TRUE(menuBar.items.empty());
}

TEST_F(MacStatusBarTest, MayLoseItsItemInAClick) {
    createWithClick([this](StatusClick, bool, const QRect&) { item.reset(); });

    const auto onClick = native().onClick;
    onClick({});

    EXPECT_TRUE(menuBar.items.empty());
}

}  // namespace
}  // namespace kestro
