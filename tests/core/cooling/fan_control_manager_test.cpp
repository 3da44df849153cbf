#include "core/cooling/fan_control_manager.h"

#include "tests/core/cooling/fan_control_fixture.h"

#include <gtest/gtest.h>

#include <vector>

namespace kestro {
namespace {

using Fixture = FanControlFixture;

TEST(FanControlManager, StartsWithTheDefaults) {
    Fixture f(fanless);
    auto& manager = f.manager();

    EXPECT_EQ(manager.currentProfile.get(), FanProfile::normal);
    EXPECT_EQ(manager.customRPM.get(), 3500);
    EXPECT_FALSE(manager.hasFans.get());
    EXPECT_EQ(manager.fanCount.get(), 0);
    EXPECT_TRUE(manager.currentFans.get().empty());
    EXPECT_TRUE(manager.isLinked.get());
    EXPECT_EQ(manager.leftCurve.get(), FanCurveConfig::leftDefault());
    EXPECT_EQ(manager.rightCurve.get(), FanCurveConfig::rightDefault());
    EXPECT_EQ(manager.activePreset.get(), CurvePreset::balancedEveryday);
    EXPECT_EQ(manager.evaluatedLeftTargetRPM.get(), 1250);
    EXPECT_EQ(manager.evaluatedRightTargetRPM.get(), 1350);
}

TEST(FanControlManager, StartsWithTheStoredValues) {
    Fixture f(fanless);
    auto left = linear(30, 60, 900, 4000);
    f.settings.fanProfile.set(FanProfile::turbo);
    f.settings.customFanRPM.set(4100);
    f.settings.isFansLinked.set(false);
    f.settings.leftFanCurve.set(left);

    EXPECT_EQ(f.manager().currentProfile.get(), FanProfile::turbo);
    EXPECT_EQ(f.manager().customRPM.get(), 4100);
    EXPECT_FALSE(f.manager().isLinked.get());
    EXPECT_EQ(f.manager().leftCurve.get(), left);
}

TEST(FanControlManager, AdoptsTheRangesOfTheFansWithoutStoringThem) {
    Fixture f;
    f.setRightRange(1350, 7800);
    auto left = FanCurveConfig::leftDefault();
    left.minRPM = 1200;
    left.maxRPM = 7300;

    EXPECT_EQ(f.manager().leftCurve.get(), left);
    EXPECT_EQ(f.manager().rightCurve.get().minRPM, 1350);
    EXPECT_EQ(f.manager().rightCurve.get().maxRPM, 7800);
    EXPECT_TRUE(f.manager().hasFans.get());
    EXPECT_EQ(f.manager().fanCount.get(), 2);
    EXPECT_EQ(f.manager().currentFans.get()[0].currentRPM, 1420);
    EXPECT_EQ(f.mac.userDefaults.totalWrites(), 0);
}

TEST(FanControlManager, LeavesTheRightCurveAloneWithOneFan) {
    Fixture f({1420});

    EXPECT_EQ(f.manager().fanCount.get(), 1);
    EXPECT_EQ(f.manager().leftCurve.get().minRPM, 1200);
    EXPECT_EQ(f.manager().rightCurve.get(), FanCurveConfig::rightDefault());
}

TEST(FanControlManager, RereadsTheFansOnRequest) {
    Fixture f(fanless);
    f.manager();
    f.mac.smc.setFans(std::vector<float>{2000, 2100});

    f.tick();
    EXPECT_FALSE(f.manager().hasFans.get());
    f.manager().refreshHardware();

    EXPECT_EQ(f.manager().fanCount.get(), 2);
    EXPECT_EQ(f.manager().leftCurve.get().minRPM, 1200);
}

TEST(FanControlManager, DetectsFansThatAppearLate) {
    Fixture f(fanless);
    f.manager();
    f.mac.smc.setFans(std::vector<float>{2000, 2100});
    f.setRightRange(1350, 7800);

    f.manager().followFans(f.readers.smc.readFans());

    EXPECT_TRUE(f.manager().hasFans.get());
    EXPECT_EQ(f.manager().fanCount.get(), 2);
    EXPECT_EQ(f.manager().currentFans.get(), f.readers.smc.readFans());
    EXPECT_EQ(f.manager().leftCurve.get().maxRPM, 7300);
    EXPECT_EQ(f.manager().rightCurve.get().minRPM, 1350);
    EXPECT_EQ(f.mac.userDefaults.totalWrites(), 0);
}

TEST(FanControlManager, KeepsAnEditedCurveWhenAnotherFanAppears) {
    Fixture f({1420});
    const auto edited = linear(45, 85, 1000, 9000);
    f.manager().updateCurve(0, edited);
    f.mac.smc.setFans(std::vector<float>{1420, 1460});

    f.manager().followFans(f.readers.smc.readFans());

    EXPECT_EQ(f.manager().leftCurve.get(), edited);
    EXPECT_EQ(f.settings.leftFanCurve.get(), edited);
    EXPECT_EQ(f.manager().rightCurve.get().minRPM, 1200);
    EXPECT_EQ(f.manager().rightCurve.get().maxRPM, 7300);
    EXPECT_EQ(f.manager().activePreset.get(), std::nullopt);
}

TEST(FanControlManager, ChangesNothingWhenOnlyTheSpeedsChange) {
    Fixture f;
    auto& manager = f.manager();
    int announcements = 0;
    const auto fans = manager.currentFans.subscribe([&](const auto&) { ++announcements; });
    const auto curves = manager.leftCurve.subscribe([&](const auto&) { ++announcements; });
    f.mac.smc.setFans(std::vector<float>{2000, 2100});

    manager.followFans(f.readers.smc.readFans());

    EXPECT_EQ(announcements, 0);
}

TEST(FanControlManager, AdoptsTheRangeOfAReplacedFanUnlessItWasEdited) {
    Fixture f;
    f.settings.isFansLinked.set(false);
    const auto edited = linear(45, 85, 1000, 9000);
    f.manager().updateCurve(0, edited);
    f.mac.smc.setFloat("F0Mx", 6100);
    f.setRightRange(900, 5400);

    f.manager().followFans(f.readers.smc.readFans());

    EXPECT_EQ(f.manager().currentFans.get()[0].maxRPM, 6100);
    EXPECT_EQ(f.manager().leftCurve.get(), edited);
    EXPECT_EQ(f.manager().rightCurve.get().minRPM, 900);
    EXPECT_EQ(f.manager().rightCurve.get().maxRPM, 5400);
}

TEST(FanControlManager, RemembersAFanThatReturns) {
    Fixture f;
    const auto edited = linear(45, 85, 1000, 9000);
    f.manager().updateCurve(0, edited);
    const auto fans = f.readers.smc.readFans();

    f.manager().followFans({});
    EXPECT_FALSE(f.manager().hasFans.get());
    EXPECT_EQ(f.manager().fanCount.get(), 0);
    f.manager().followFans(fans);

    EXPECT_TRUE(f.manager().hasFans.get());
    EXPECT_EQ(f.manager().leftCurve.get(), edited);
}

TEST(FanControlManager, EvaluatesOnceASecondWhileCustom) {
    Fixture f;
    f.settings.fanProfile.set(FanProfile::custom);
    f.settings.leftFanCurve.set(linear(40, 80, 0, 0));
    f.setTemperatures(60, 30);
    auto& manager = f.manager();
    EXPECT_EQ(manager.evaluatedLeftTargetRPM.get(), 1250);

    f.tick();

    EXPECT_DOUBLE_EQ(manager.evaluatedLeftTargetRPM.get(), 1200 + 6100 * 0.5);
    EXPECT_EQ(manager.evaluatedRightTargetRPM.get(), manager.rightCurve.get().evaluateRPM(60));
}

TEST(FanControlManager, FollowsTheTemperatureFromSecondToSecond) {
    Fixture f;
    f.settings.fanProfile.set(FanProfile::custom);
    f.settings.leftFanCurve.set(linear(40, 80, 0, 0));
    f.manager();
    f.setTemperatures(50, 30);
    f.tick();
    const double cool = f.manager().evaluatedLeftTargetRPM.get();

    f.setTemperatures(70, 30);
    f.tick();

    EXPECT_DOUBLE_EQ(cool, 1200 + 6100 * 0.25);
    EXPECT_DOUBLE_EQ(f.manager().evaluatedLeftTargetRPM.get(), 1200 + 6100 * 0.75);
}

TEST(FanControlManager, ComputesNothingForTheFixedProfiles) {
    Fixture f;
    f.setTemperatures(95, 30);
    for (const auto profile : {FanProfile::silent, FanProfile::normal, FanProfile::cool, FanProfile::turbo}) {
        f.manager().setProfile(profile);
        f.tick();

        EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 1250);
        EXPECT_EQ(f.manager().evaluatedRightTargetRPM.get(), 1350);
    }
}

TEST(FanControlManager, ComputesNothingWithoutFans) {
    Fixture f(fanless);
    f.setTemperatures(95, 30);

    f.manager().setProfile(FanProfile::custom);
    f.manager().applyPreset(CurvePreset::aggressiveTurbo);
    f.tick();

    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 1250);
    EXPECT_EQ(f.manager().evaluatedRightTargetRPM.get(), 1350);
    EXPECT_EQ(f.settings.leftFanCurve.get(), applyTo(CurvePreset::aggressiveTurbo, 1200, 7300));
}

TEST(FanControlManager, DrivesEachCurveFromItsOwnSensorEvenWhenLinked) {
    Fixture f;
    f.setTemperatures(70, 35);
    auto left = linear(30, 90, 0, 0);
    auto right = left;
    right.sensorSource = SensorSource::batteryPack;
    f.settings.leftFanCurve.set(left);
    f.settings.rightFanCurve.set(right);

    f.manager().setProfile(FanProfile::custom);

    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), f.manager().leftCurve.get().evaluateRPM(70));
    EXPECT_EQ(f.manager().evaluatedRightTargetRPM.get(), f.manager().rightCurve.get().evaluateRPM(35));
    EXPECT_NE(f.manager().evaluatedLeftTargetRPM.get(), f.manager().evaluatedRightTargetRPM.get());
}

TEST(FanControlManager, AssumesBatteryFallbackOf32DegreesWhileTheSensorReadsZero) {
    Fixture f;
    auto left = linear(30, 40, 0, 0);
    left.sensorSource = SensorSource::batteryPack;
    f.settings.leftFanCurve.set(left);
    f.setTemperatures(70, 0);

    f.manager().setProfile(FanProfile::custom);

    EXPECT_DOUBLE_EQ(f.manager().evaluatedLeftTargetRPM.get(), 1200 + 6100 * 0.2);
}

TEST(FanControlManager, EvaluatesBothCurvesOnAMachineWithOneFan) {
    Fixture f({1420});
    f.setTemperatures(66, 30);

    f.manager().setProfile(FanProfile::custom);

    EXPECT_EQ(f.manager().evaluatedRightTargetRPM.get(), FanCurveConfig::rightDefault().evaluateRPM(66));
}

TEST(FanControlManager, StoresAndAppliesAProfile) {
    Fixture f;
    f.setTemperatures(84, 30);

    f.manager().setProfile(FanProfile::custom);

    EXPECT_EQ(f.manager().currentProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.settings.fanProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 7300);
    EXPECT_EQ(f.writes("kestro.customFanRPM"), 0);
}

TEST(FanControlManager, KeepsAndStoresATarget) {
    Fixture f;

    f.manager().setProfile(FanProfile::cool, 4200);

    EXPECT_EQ(f.manager().customRPM.get(), 4200);
    EXPECT_EQ(f.settings.customFanRPM.get(), 4200);
    EXPECT_EQ(f.settings.fanProfile.get(), FanProfile::cool);
}

TEST(FanControlManager, SelectsAProfileWithoutStoringIt) {
    Fixture f;
    f.setTemperatures(84, 30);

    f.manager().selectProfile(FanProfile::custom);

    EXPECT_EQ(f.manager().currentProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 7300);
    EXPECT_EQ(f.mac.userDefaults.totalWrites(), 0);
}

TEST(FanControlManager, OnlyEverReadsTheHardware) {
    Fixture f;
    f.setTemperatures(84, 30);

    f.manager().setProfile(FanProfile::turbo, 4200);
    f.manager().applyPreset(CurvePreset::aggressiveTurbo);
    f.manager().updateCurve(1, linear(45, 85, 1200, 7300));
    f.manager().toggleLinking();
    f.tick();
    f.manager().refreshHardware();
    f.made.reset();

    // The simulated controller counts any command other than its two read commands as malformed.
    EXPECT_EQ(f.mac.smc.malformedRecords(), 0);
    EXPECT_GT(f.mac.smc.bytesCalls(), 0);
}

TEST(FanControlManager, CancelsItsTimerWhenDestroyed) {
    Fixture f;
    f.manager();
    const auto timers = f.mac.runLoop.timerPeriods().size();

    f.made.reset();

    EXPECT_EQ(f.mac.runLoop.timerPeriods().size(), timers - 1);
}

}  // namespace
}  // namespace kestro
