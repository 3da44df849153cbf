#include "tests/app/app_delegate_fixture.h"

#include <QGuiApplication>
#include <QIcon>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace kestro {
namespace {

using testing::ElementsAre;

using AppDelegateLaunch = test::AppDelegateFixture;

TEST_F(AppDelegateLaunch, CreatesTheMainItemFirst) {
    settings.showDedicatedFanItem.set(true);

    launch();

    EXPECT_THAT(bar.created, ElementsAre(QStringLiteral("kestro-main"), QStringLiteral("kestro-keep-awake"),
                                         QStringLiteral("kestro-cooling")));
}

TEST_F(AppDelegateLaunch, LoadsTheApplicationIconBeforeCreatingAnyItem) {
    QGuiApplication::setWindowIcon(QIcon());
    bool hadIcon = false;
    bar.onCreate = [&] { hadIcon = !QGuiApplication::windowIcon().isNull(); };

    launch();

    EXPECT_TRUE(hadIcon);
}

TEST_F(AppDelegateLaunch, ComposesTheFirstReadoutBeforeAnySampleOrOtherItem) {
    std::vector<StatusContent> beforeOthers;
    bar.onCreate = [&] {
        if (bar.contains(mainItem)) {
            beforeOthers.push_back(shown());
        }
    };

    launch();

    ASSERT_EQ(beforeOthers.size(), 1U);
    const StatusContent& first = beforeOthers.front();
    EXPECT_EQ(first.title.text, QStringLiteral(" RAM -- · 0 RPM"));
    EXPECT_EQ(first.title.pointSize, 12);
    EXPECT_EQ(first.title.weight, 500);
    EXPECT_EQ(first.symbol, (StatusSymbol{QStringLiteral("waveform.path.ecg"), QStringLiteral("Kestro"), 12}));
}

TEST_F(AppDelegateLaunch, ShowsNoWindowAndBuildsNoContent) {
    launch();

    EXPECT_FALSE(isPopoverShown());
    EXPECT_FALSE(isDashboardShown());
    EXPECT_EQ(delegate.settingsWindow(), nullptr);
    EXPECT_EQ(contentsMade, 0);
    EXPECT_FALSE(engine.isUIActive.get());
}

TEST_F(AppDelegateLaunch, FitsTheDashboardsWidthToItsSections) {
    settings.showCompute.set(false);

    launch();

    EXPECT_EQ(delegate.dashboardWindow()->size(), QSize(4 * 236 + 80, 480));
}

TEST_F(AppDelegateLaunch, StartsBothCommandChannels) {
    launch();

    EXPECT_EQ(mac.fileEvents.watches(), 2);
    EXPECT_EQ(mac.fileEvents.contents(commandFile), "");
    EXPECT_EQ(mac.fileEvents.contents(ownCommandFile), "");
}

TEST_F(AppDelegateLaunch, WorksWithoutACommandChannel) {
    mac.fileEvents.watchFailure.always();

    launch();
    click();

    EXPECT_TRUE(isPopoverShown());
}

}  // namespace
}  // namespace kestro
