#include "app/readout_publication.h"

#include "app/status_items/main_status_item.h"
#include "tests/app/app_delegate_fixture.h"

#include <QGuiApplication>
#include <QScreen>

#include <optional>

namespace kestro {
namespace {

using namespace std::chrono_literals;

/// The application as another program of the session sees it.
struct ReadoutPublicationTest : test::AppDelegateFixture {
    SharedReadout readout() { return readoutService.handlers->readout(); }
    ReadoutFigures figures() { return readoutService.handlers->figures(); }
};

TEST_F(ReadoutPublicationTest, SharesTheTextOfTheItem) {
    launch();
    mac.advance(5s);
    settle();

    const StatusContent& shown = bar.item(mainItem).content;
    EXPECT_EQ(readout().text, shown.title.text.trimmed());
    EXPECT_TRUE(readout().text.startsWith(QStringLiteral("RAM ")));
    EXPECT_EQ(readout().widestText, shown.widestTitle.trimmed());
    EXPECT_EQ(readout().toolTip, shown.toolTip);
    EXPECT_TRUE(readout().hasSymbol);
}

TEST_F(ReadoutPublicationTest, SharesOnlyTheSymbolIfTheUserWantsThat) {
    launch();

    settings.menubarIconStyle.set(MenubarIconStyle::iconOnly);
    settle();

    EXPECT_TRUE(readout().text.isEmpty());
    EXPECT_TRUE(readout().hasSymbol);
}

TEST_F(ReadoutPublicationTest, SharesTheStateOfKeepAwake) {
    launch();
    EXPECT_FALSE(readout().isKeepAwakeActive);

    keepAwake.activate(KeepAwakeDuration::minutes15);
    EXPECT_TRUE(readout().isKeepAwakeActive);
    EXPECT_EQ(readout().keepAwakeRemainingSeconds, 900);

    keepAwake.activate(KeepAwakeDuration::indefinite);
    EXPECT_TRUE(readout().isKeepAwakeActive);
    EXPECT_EQ(readout().keepAwakeRemainingSeconds, std::nullopt);
}

TEST_F(ReadoutPublicationTest, SharesTheFiguresOfTheReadout) {
    launch();
    settings.activeMenubarModules.set({MenubarModuleType::appIcon, MenubarModuleType::memory});
    mac.advance(5s);
    settle();

    ASSERT_TRUE(figures().memoryPercent);
    EXPECT_EQ(readout().text, QStringLiteral("RAM %1%").arg(*figures().memoryPercent));
    EXPECT_EQ(figures().fanSpeedsRpm, std::nullopt);
}

TEST_F(ReadoutPublicationTest, AnnouncesAnUpdateForEachTickAndEachLookAtThePowerMode) {
    launch();
    mac.advance(20s);
    settle();
    const int before = readoutService.updates;
    // Not eco's three seconds, in which the two would meet now and then.
    ASSERT_EQ(idleInterval(settings.pollingProfile.get()), 2);

    mac.advance(20s);
    settle();

    EXPECT_EQ(readoutService.updates - before, 20 / 2 + 20 / 5);
}

TEST_F(ReadoutPublicationTest, OpensThePopoverAtTheClick) {
    launch();

    readoutService.handlers->togglePopover({300, 0, 1, 24});
    EXPECT_TRUE(isPopoverShown());

    readoutService.handlers->togglePopover({300, 0, 1, 24});
    EXPECT_FALSE(isPopoverShown());
}

TEST_F(ReadoutPublicationTest, OpensThePopoverAtTheItemIfTheClickIsUnknown) {
    launch();
    bar.item(mainItem).geometry = {500, 0, 80, 24};
    const auto rightEdge = [this] { return delegate.popover()->geometry().right(); };

    readoutService.handlers->togglePopover({});
    EXPECT_EQ(rightEdge(), bar.item(mainItem).geometry.right());
    readoutService.handlers->togglePopover({});
    readoutService.handlers->togglePopover({400, 0, 1, 24});

    EXPECT_EQ(rightEdge(), 400);
}

TEST_F(ReadoutPublicationTest, KeepsThePopoverAtTheClickWhenPanelsChange) {
    launch();
    bar.item(mainItem).geometry = {500, 0, 80, 24};
    readoutService.handlers->togglePopover({400, 0, 1, 24});

    QScreen& screen = *QGuiApplication::primaryScreen();
    Q_EMIT screen.availableGeometryChanged(screen.availableGeometry());
    settle();

    EXPECT_EQ(delegate.popover()->geometry().right(), 400);
}

TEST_F(ReadoutPublicationTest, ShowsTheWindows) {
    launch();

    readoutService.handlers->showDashboard();
    readoutService.handlers->showSettings(SettingsTab::cooling);

    EXPECT_TRUE(delegate.dashboardWindow()->isOnScreen());
    EXPECT_TRUE(delegate.settingsWindow()->isOnScreen());
    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::cooling);

    readoutService.handlers->showSettings(std::nullopt);
    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::cooling);
}

TEST_F(ReadoutPublicationTest, TogglesKeepAwake) {
    launch();

    readoutService.handlers->toggleKeepAwake();
    EXPECT_TRUE(keepAwake.isActive.get());

    readoutService.handlers->toggleKeepAwake();
    EXPECT_FALSE(keepAwake.isActive.get());
}

TEST_F(ReadoutPublicationTest, OffersTheMenuOfTheItem) {
    launch();

    EXPECT_NE(test::findEntry(readoutService.handlers->buildMenu(), QStringLiteral("Quit Kestro")), nullptr);
}

TEST(ReadoutPublication, EndsWithTheApplication) {
    test::FakeReadoutService service;
    test::SimulatedKestro kestro;
    test::FakeStatusBar bar;
    {
        MainStatusItem item(kestro.mac.platform(), bar, kestro.services(), {});
        const ReadoutPublication publication(service, kestro.services(), item, {});
        EXPECT_TRUE(service.handlers);
    }
    EXPECT_FALSE(service.handlers);
}

}  // namespace
}  // namespace kestro
