#include "tests/ui/settings/settings_view_test.h"

namespace kestro {
namespace {

using SettingsPowerStatusTest = SettingsViewFixture;

TEST_F(SettingsPowerStatusTest, SaysWhyKeepAwakeIsNotHeld) {
    open(SettingsTab::keepAwake);
    machine_->keepAwake().activate(KeepAwakeDuration::indefinite);
    ASSERT_TRUE(shows("KEEP-AWAKE ACTIVE"));

    machine_->mac.powerAssertions.setReport({PowerAssertionReport::State::lost, {}});

    EXPECT_TRUE(shows("KEEP-AWAKE NOT HELD"));
    EXPECT_EQ(button("Deactivate").accessibleInfo().description,
              QStringLiteral("Not held: the lock was lost, and will be requested again."));
}

TEST_F(SettingsPowerStatusTest, SaysWhyAPowerModeIsUnavailable) {
    open(SettingsTab::power);
    SettingRow& high = row("High Power");
    EXPECT_TRUE(high.help().isEmpty());

    PowerModeConditions conditions;
    conditions.isOffered = {true, true, false};
    conditions.failedSwitch = {1, PowerModeConditions::Failure::denied};
    machine_->mac.powerModeService.set(conditions);

    EXPECT_EQ(high.help(), QStringLiteral("The power profiles service does not offer this mode on this machine."));
    EXPECT_TRUE(high.accessibleInfo().description.endsWith(high.help()));
    EXPECT_TRUE(high.isEnabled());
    EXPECT_EQ(row("Low Power").help(),
              QStringLiteral("This mode was not switched to, because the administrator did not consent."));
    EXPECT_TRUE(row("Balanced (Automatic)").isOn());
}

}  // namespace
}  // namespace kestro
