#include "core/cooling/fan_control_manager.h"

#include "core/engine/telemetry_engine.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/disk_reader.h"
#include "core/telemetry/memory_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/power_reader.h"
#include "core/telemetry/process_reader.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

const std::vector<float> fanless;

/// A still machine whose fans run from 1200 to 7300, with a manager made at first use.
struct Fixture {
    SimulatedMac mac;
    UserSettings settings{mac.userDefaults};
    CPUReader cpu{mac.machHost, mac.systemControl};
    MemoryReader memory{mac.machHost, mac.systemControl, mac.processInfo};
    DiskReader disk{mac.fileSystem};
    NetworkReader network{mac.networkInterfaces, mac.clock};
    PowerReader power{mac.powerSources};
    SMCReader smc{mac.smc};
    ThermalReader thermal{mac.hidEventSystem, mac.processInfo};
    ProcessReader processes{mac.commandRunner};
    TelemetryEngine engine{mac.platform(), settings, {cpu, memory, disk, network, power, smc, thermal, processes}};
    std::unique_ptr<FanControlManager> made;

    explicit Fixture(const std::vector<float>& fanSpeeds = {1420, 1460}) {
        mac.freeze();
        mac.smc.setFans(fanSpeeds);
    }

    FanControlManager& manager() {
        if (!made) {
            made = std::make_unique<FanControlManager>(mac.platform(), settings, engine, smc);
        }
        return *made;
    }

    /// The only sensors from now on: one in the die, one in the battery.
    void setTemperatures(double die, double battery) {
        mac.hidEventSystem.sensors = {{"PMU tdie1", die}, {"gas gauge battery", battery}};
        engine.sampleFull();
    }

    /// The second fan with a range of its own.
    void setRightRange(float minRPM, float maxRPM) {
        mac.smc.setFloat("F1Mn", minRPM);
        mac.smc.setFloat("F1Mx", maxRPM);
    }

    /// The next firing of the one-second timer.
    void tick() { mac.advance(1s); }

    std::int64_t writes(std::string_view key) const { return mac.userDefaults.writes(key); }
};

FanCurveConfig linear(double lowTemp, double highTemp, double minRPM, double maxRPM) {
    FanCurveConfig config;
    config.curveShape = CurveShape::linear;
    config.lowTemp = lowTemp;
    config.highTemp = highTemp;
    config.minRPM = minRPM;
    config.maxRPM = maxRPM;
    return config;
}

TEST(FanControlManager, StartsFromTheDefaults) {
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

TEST(FanControlManager, StartsFromWhatIsStored) {
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

TEST(FanControlManager, TakesTheRangesOfTheFansWithoutStoringThem) {
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

TEST(FanControlManager, ReadsTheFansAgainWhenAsked) {
    Fixture f(fanless);
    f.manager();
    f.mac.smc.setFans(std::vector<float>{2000, 2100});

    f.tick();
    EXPECT_FALSE(f.manager().hasFans.get());
    f.manager().refreshHardware();

    EXPECT_EQ(f.manager().fanCount.get(), 2);
    EXPECT_EQ(f.manager().leftCurve.get().minRPM, 1200);
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

TEST(FanControlManager, DrivesEachCurveByItsOwnSensorEvenWhenLinked) {
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

TEST(FanControlManager, AppliesAPresetOverEachFansRange) {
    Fixture f;
    f.setRightRange(1350, 4800);
    f.setTemperatures(92, 30);

    f.manager().applyPreset(CurvePreset::quietStudio);

    EXPECT_EQ(f.manager().activePreset.get(), CurvePreset::quietStudio);
    EXPECT_EQ(f.manager().leftCurve.get(), applyTo(CurvePreset::quietStudio, 1200, 7300));
    EXPECT_EQ(f.manager().rightCurve.get(), applyTo(CurvePreset::quietStudio, 1350, 4800));
    EXPECT_EQ(f.settings.leftFanCurve.get(), f.manager().leftCurve.get());
    EXPECT_EQ(f.settings.rightFanCurve.get(), f.manager().rightCurve.get());
    EXPECT_EQ(f.settings.fanProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 5200);
    EXPECT_EQ(f.manager().evaluatedRightTargetRPM.get(), 4800);
}

TEST(FanControlManager, AppliesAPresetOverTheFallbackRanges) {
    Fixture none(fanless);
    none.manager().applyPreset(CurvePreset::linearPro);
    Fixture one({1420});
    one.mac.smc.setFloat("F0Mn", 1000);
    one.manager().applyPreset(CurvePreset::linearPro);

    EXPECT_EQ(none.manager().leftCurve.get(), applyTo(CurvePreset::linearPro, 1200, 7300));
    EXPECT_EQ(none.manager().rightCurve.get(), applyTo(CurvePreset::linearPro, 1300, 7800));
    EXPECT_EQ(one.manager().leftCurve.get(), applyTo(CurvePreset::linearPro, 1000, 7300));
    EXPECT_EQ(one.manager().rightCurve.get(), applyTo(CurvePreset::linearPro, 1300, 7800));
}

TEST(FanControlManager, LeavesAPresetToTheTimerWhenAlreadyCustom) {
    Fixture f;
    f.setTemperatures(92, 30);
    f.settings.fanProfile.set(FanProfile::custom);
    f.manager();
    const auto writes = f.writes("kestro.fanProfile");

    f.manager().applyPreset(CurvePreset::quietStudio);
    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 1250);
    EXPECT_EQ(f.writes("kestro.fanProfile"), writes);
    f.tick();

    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 5200);
}

TEST(FanControlManager, AppliesAPresetInOrder) {
    Fixture f;
    auto& manager = f.manager();
    std::vector<std::string> order;
    const auto presets = manager.activePreset.subscribe([&](const auto&) { order.push_back("preset"); });
    const auto lefts = manager.leftCurve.subscribe([&](const auto&) { order.push_back("left"); });
    const auto rights = manager.rightCurve.subscribe([&](const auto&) { order.push_back("right"); });
    const auto storedLefts =
        f.settings.leftFanCurve.subscribe([&](const auto&) { order.push_back("left stored"); });
    const auto storedRights =
        f.settings.rightFanCurve.subscribe([&](const auto&) { order.push_back("right stored"); });
    const auto profiles = manager.currentProfile.subscribe([&](const auto&) { order.push_back("profile"); });
    const auto storedProfiles =
        f.settings.fanProfile.subscribe([&](const auto&) { order.push_back("profile stored"); });
    const auto leftTargets =
        manager.evaluatedLeftTargetRPM.subscribe([&](const auto&) { order.push_back("left target"); });
    const auto rightTargets =
        manager.evaluatedRightTargetRPM.subscribe([&](const auto&) { order.push_back("right target"); });

    manager.applyPreset(CurvePreset::balancedEveryday);

    EXPECT_EQ(order, (std::vector<std::string>{"preset", "left", "right", "left stored", "right stored", "profile",
                                               "profile stored", "left target", "right target"}));
}

TEST(FanControlManager, CopiesALinkedEditButKeepsTheRightFansRange) {
    Fixture f;
    f.setRightRange(1350, 7800);
    const auto edited = linear(45, 85, 1200, 7300);
    auto right = edited;
    right.minRPM = 1350;
    right.maxRPM = 7800;

    f.manager().updateCurve(0, edited);

    EXPECT_EQ(f.manager().activePreset.get(), std::nullopt);
    EXPECT_EQ(f.manager().leftCurve.get(), edited);
    EXPECT_EQ(f.manager().rightCurve.get(), right);
    EXPECT_EQ(f.settings.leftFanCurve.get(), edited);
    EXPECT_EQ(f.settings.rightFanCurve.get(), right);
}

TEST(FanControlManager, GivesTheLeftCurveTheRangeOfALinkedEditOfTheRight) {
    Fixture f;
    f.setRightRange(1350, 7800);
    const auto edited = linear(45, 85, 1000, 9000);

    f.manager().updateCurve(1, edited);

    EXPECT_EQ(f.manager().leftCurve.get(), edited);
    EXPECT_EQ(f.manager().rightCurve.get().minRPM, 1350);
    EXPECT_EQ(f.manager().rightCurve.get().maxRPM, 7800);
}

TEST(FanControlManager, KeepsAnEditsOwnRangeForTheRightWithOneFan) {
    Fixture f({1420});
    const auto edited = linear(45, 85, 1000, 9000);

    f.manager().updateCurve(1, edited);

    EXPECT_EQ(f.manager().rightCurve.get(), edited);
}

TEST(FanControlManager, EditsOneCurveWhileIndependent) {
    Fixture f;
    f.settings.isFansLinked.set(false);
    const auto rightBefore = f.manager().rightCurve.get();
    const auto edited = linear(45, 85, 1200, 7300);

    f.manager().updateCurve(0, edited);
    EXPECT_EQ(f.manager().leftCurve.get(), edited);
    EXPECT_EQ(f.manager().rightCurve.get(), rightBefore);
    EXPECT_EQ(f.writes("kestro.rightFanCurve"), 0);
    const auto other = linear(50, 70, 1200, 7300);
    f.manager().updateCurve(1, other);

    EXPECT_EQ(f.manager().leftCurve.get(), edited);
    EXPECT_EQ(f.manager().rightCurve.get().lowTemp, 50);
    EXPECT_EQ(f.writes("kestro.leftFanCurve"), 1);
}

TEST(FanControlManager, SwitchesToCustomWithAnEdit) {
    Fixture f;
    f.setTemperatures(90, 30);
    f.manager().setProfile(FanProfile::silent);

    f.manager().updateCurve(0, linear(45, 85, 1200, 7300));

    EXPECT_EQ(f.manager().currentProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.settings.fanProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 7300);
}

TEST(FanControlManager, LeavesAnEditToTheTimerWhenAlreadyCustom) {
    Fixture f;
    f.setTemperatures(90, 30);
    f.settings.fanProfile.set(FanProfile::custom);

    f.manager().updateCurve(0, linear(45, 85, 1200, 7300));
    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 1250);
    f.tick();

    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 7300);
}

TEST(FanControlManager, UnlinksWithoutTouchingTheCurves) {
    Fixture f;
    const auto left = f.manager().leftCurve.get();
    const auto right = f.manager().rightCurve.get();

    f.manager().toggleLinking();

    EXPECT_FALSE(f.manager().isLinked.get());
    EXPECT_FALSE(f.settings.isFansLinked.get());
    EXPECT_EQ(f.manager().leftCurve.get(), left);
    EXPECT_EQ(f.manager().rightCurve.get(), right);
    EXPECT_EQ(f.manager().activePreset.get(), CurvePreset::balancedEveryday);
    EXPECT_EQ(f.manager().currentProfile.get(), FanProfile::normal);
}

TEST(FanControlManager, RelinksByCopyingLeftToRight) {
    Fixture f;
    f.setRightRange(1350, 7800);
    f.settings.isFansLinked.set(false);
    const auto edited = linear(45, 85, 1200, 7300);
    f.manager().updateCurve(0, edited);
    f.manager().setProfile(FanProfile::silent);

    f.manager().toggleLinking();

    EXPECT_TRUE(f.settings.isFansLinked.get());
    EXPECT_EQ(f.manager().leftCurve.get(), edited);
    EXPECT_EQ(f.manager().rightCurve.get().lowTemp, 45);
    EXPECT_EQ(f.manager().rightCurve.get().maxRPM, 7800);
    EXPECT_EQ(f.manager().activePreset.get(), std::nullopt);
    EXPECT_EQ(f.manager().currentProfile.get(), FanProfile::custom);
}

TEST(FanControlManager, LeavesTheFansToTheHardwareWhenDestroyed) {
    Fixture f;
    f.manager();
    const auto timers = f.mac.runLoop.timerPeriods().size();

    f.made.reset();

    EXPECT_EQ(f.mac.runLoop.timerPeriods().size(), timers - 1);
}

}  // namespace
}  // namespace kestro
