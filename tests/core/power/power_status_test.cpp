#include "core/power/power_status.h"

#include "tests/support/simulated_services.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using ReportState = PowerAssertionReport::State;
using Failure = PowerModeConditions::Failure;

struct PowerStatusTest : testing::Test {
    SimulatedServices machine;
    SimulatedMac& mac = machine.mac;
    KeepAwakeManager& manager = machine.keepAwake();
    PowerStatus& status = machine.powerStatus();

    const std::string& note() const { return status.keepAwake.get().note; }
    bool isHeld() const { return status.keepAwake.get().isHeld; }
    const std::string& note(SystemPowerMode mode) const {
        return status.powerModeNotes.get().at(static_cast<std::size_t>(mode));
    }
};

TEST_F(PowerStatusTest, HasNothingToSayAtFirst) {
    EXPECT_EQ(status.keepAwake.get(), KeepAwakeStatus{});
    EXPECT_EQ(status.powerModeNotes.get(), PowerModeNotes{});
}

TEST_F(PowerStatusTest, NamesTheHoldersAndWhatTheyKeepAwake) {
    manager.activate(KeepAwakeDuration::indefinite);
    mac.powerAssertions.setReport({ReportState::held, {"GNOME", "logind"}});
    EXPECT_TRUE(isHeld());
    EXPECT_EQ(note(), "Display & System · held by GNOME, logind");

    manager.setTargetMode(KeepAwakeTarget::systemOnly);
    mac.powerAssertions.setReport({ReportState::held, {"logind"}});

    EXPECT_EQ(note(), "System Only (Display May Sleep) · held by logind");
}

TEST_F(PowerStatusTest, SaysNotHeldUntilALockIsBack) {
    manager.activate(KeepAwakeDuration::indefinite);
    mac.powerAssertions.setReport({ReportState::pending, {}});
    EXPECT_FALSE(isHeld());
    EXPECT_EQ(note(), "Not held: the desktop has not granted the lock yet.");

    mac.powerAssertions.setReport({ReportState::lost, {}});
    EXPECT_EQ(note(), "Not held: the lock was lost, and will be requested again.");

    mac.powerAssertions.setReport({ReportState::held, {"KDE"}});
    EXPECT_TRUE(isHeld());
}

TEST_F(PowerStatusTest, SaysWhyARefusedActivationDidNotHappen) {
    mac.powerAssertions.refusal.always();

    manager.activate(KeepAwakeDuration::indefinite);

    EXPECT_FALSE(isHeld());
    EXPECT_EQ(note(), "Keep-awake is off because no service of this desktop grants the lock.");
}

TEST_F(PowerStatusTest, IsNotHeldWhenARestartIsRefused) {
    manager.activate(KeepAwakeDuration::indefinite);
    mac.powerAssertions.refusal.always();

    manager.activate(KeepAwakeDuration::hours1);

    EXPECT_TRUE(manager.isActive.get());
    EXPECT_FALSE(isHeld());
    EXPECT_EQ(note(), "Not held: no service of this desktop grants the lock.");
}

TEST_F(PowerStatusTest, SaysNothingAfterTheUserEndsIt) {
    manager.activate(KeepAwakeDuration::indefinite);

    manager.deactivate();

    EXPECT_EQ(status.keepAwake.get(), KeepAwakeStatus{});
}

TEST_F(PowerStatusTest, WatchesTheBatteryOnlyWhileTheCutOffApplies) {
    EXPECT_FALSE(mac.powerEvents.isWatched());

    manager.activate(KeepAwakeDuration::indefinite);
    EXPECT_TRUE(mac.powerEvents.isWatched());
    machine.settings().keepAwakeAutoDisableOnBattery.set(false);
    EXPECT_FALSE(mac.powerEvents.isWatched());
    machine.settings().keepAwakeAutoDisableOnBattery.set(true);
    EXPECT_TRUE(mac.powerEvents.isWatched());
    manager.deactivate();

    EXPECT_FALSE(mac.powerEvents.isWatched());
}

TEST_F(PowerStatusTest, SaysWhyASwitchOfThePowerModeDidNotHappen) {
    const auto failed = [&](Failure reason) {
        mac.powerModeService.set({{true, true, true}, PowerModeConditions::FailedSwitch{2, reason}});
        return note(SystemPowerMode::highPower);
    };

    EXPECT_EQ(failed(Failure::noService), "Nothing on this machine can switch to this mode.");
    EXPECT_EQ(failed(Failure::denied),
              "This mode was not switched to, because the administrator did not consent.");
    EXPECT_EQ(failed(Failure::rejected),
              "This mode was not switched to, because the power profiles service refused.");
    EXPECT_EQ(failed(Failure::reverted), "The power profiles service accepted this mode, but did not keep it.");
    EXPECT_EQ(note(SystemPowerMode::lowPower), "");
}

TEST_F(PowerStatusTest, ForgetsAFailedSwitchOnceTheModeIsActive) {
    mac.powerModeService.set({{true, true, true}, PowerModeConditions::FailedSwitch{2, Failure::denied}});
    ASSERT_NE(note(SystemPowerMode::highPower), "");

    machine.powerManager().setPowerMode(SystemPowerMode::highPower);
    mac.runPending();

    ASSERT_EQ(machine.powerManager().currentMode.get(), SystemPowerMode::highPower);
    EXPECT_EQ(note(SystemPowerMode::highPower), "");
}

TEST_F(PowerStatusTest, SaysWhichModeATwoProfileMachineLacks) {
    mac.powerModeService.set({{true, true, false}, std::nullopt});

    EXPECT_EQ(note(SystemPowerMode::highPower),
              "The power profiles service does not offer this mode on this machine.");
    EXPECT_EQ(note(SystemPowerMode::balanced), "");
}

}  // namespace
}  // namespace kestro
