#include "app/status_items/fan_control_status_item.h"

#include "app/base/notification_names.h"
#include "tests/app/menus/menu_reading.h"
#include "tests/app/simulated_kestro.h"
#include "tests/shell/fake_status_bar.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using test::findEntry;
using test::linesOf;
using test::pick;

struct FanControlStatusItemTest : testing::Test, test::SimulatedKestro {
    const QString identifier = QStringLiteral("kestro-cooling");
    test::FakeStatusBar bar;
    FanControlStatusItem item{mac.platform(), bar, settings, smc, fanManager, powerManager};

    void enable() {
        settings.showDedicatedFanItem.set(true);
        mac.runPending();
    }
    const StatusContent& shown() { return bar.item(identifier).content; }
};

TEST_F(FanControlStatusItemTest, IsHiddenByDefaultAndFollowsItsSetting) {
    EXPECT_FALSE(bar.contains(identifier));

    enable();
    EXPECT_TRUE(bar.contains(identifier));

    settings.showDedicatedFanItem.set(false);
    mac.runPending();
    EXPECT_FALSE(bar.contains(identifier));
}

TEST_F(FanControlStatusItemTest, ShowsTheProfileInCapitals) {
    enable();

    EXPECT_EQ(shown().symbol, (StatusSymbol{QStringLiteral("fanblades"), QStringLiteral("Cooling & Power"), 13}));
    EXPECT_EQ(shown().title,
              (StatusTitle{QStringLiteral(" NORMAL (AUTO)"), 10, 700, StatusTitleColor::secondaryLabel}));
}

TEST_F(FanControlStatusItemTest, FollowsTheProfile) {
    enable();

    fanManager.setProfile(FanProfile::custom);
    mac.runPending();

    EXPECT_EQ(shown().title.text, QStringLiteral(" CUSTOM CURVES"));
}

TEST_F(FanControlStatusItemTest, ReadsTheFansWhenItsMenuOpens) {
    enable();
    mac.smc.setFans(std::vector<float>{2150});

    const auto lines = linesOf(bar.menu(identifier));

    EXPECT_EQ(lines[2].substr(lines[2].find(':')), ": 2150 RPM (15%))");
    EXPECT_EQ(lines[3], "---");
}

TEST_F(FanControlStatusItemTest, ReportsAMachineWithoutFans) {
    enable();
    mac.smc.setFans({});

    EXPECT_EQ(linesOf(bar.menu(identifier))[2], "(Acoustics: 0 dB (Fanless Architecture))");
}

TEST_F(FanControlStatusItemTest, SelectsAndStoresAProfile) {
    enable();

    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("Cool")));

    EXPECT_EQ(fanManager.currentProfile.get(), FanProfile::cool);
    EXPECT_EQ(settings.fanProfile.get(), FanProfile::cool);
    EXPECT_TRUE(findEntry(bar.menu(identifier), QStringLiteral("Cool"))->isChecked);
}

TEST_F(FanControlStatusItemTest, AppliesAPresetAndChecksItWhileTheCurvesDriveTheFans) {
    enable();

    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("Quiet Studio")));
    EXPECT_TRUE(findEntry(bar.menu(identifier), QStringLiteral("Quiet Studio"))->isChecked);

    fanManager.setProfile(FanProfile::silent);
    EXPECT_FALSE(findEntry(bar.menu(identifier), QStringLiteral("Quiet Studio"))->isChecked);
}

TEST_F(FanControlStatusItemTest, SwitchesThePowerMode) {
    enable();

    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("Low Power")));
    mac.runPending();

    EXPECT_EQ(powerManager.currentMode.get(), SystemPowerMode::lowPower);
    EXPECT_TRUE(findEntry(bar.menu(identifier), QStringLiteral("Low Power"))->isChecked);
}

TEST_F(FanControlStatusItemTest, OpensTheSettingsAtItsTab) {
    enable();

    EXPECT_TRUE(pick(bar.menu(identifier), QStringLiteral("Cooling Settings...")));

    EXPECT_EQ(settings.selectedSettingsTab.get(), SettingsTab::cooling);
    ASSERT_EQ(mac.notifications.postings.size(), 1);
    EXPECT_EQ(mac.notifications.postings[0].name, notification_names::showSettings);
    EXPECT_TRUE(mac.notifications.postings[0].userInfo.empty());
}

}  // namespace
}  // namespace kestro
