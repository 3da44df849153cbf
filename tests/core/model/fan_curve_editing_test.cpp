#include "tests/core/cooling/fan_control_fixture.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kestro {
namespace {

using Fixture = FanControlFixture;

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

TEST(FanControlManager, DefersAPresetToTheTimerWhenAlreadyCustom) {
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

TEST(FanControlManager, NotifiesInOrderWhenApplyingAPreset) {
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

TEST(FanControlManager, AppliesTheRangeOfALinkedRightEditToTheLeftCurve) {
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

TEST(FanControlManager, SwitchesToCustomOnAnEdit) {
    Fixture f;
    f.setTemperatures(90, 30);
    f.manager().setProfile(FanProfile::silent);

    f.manager().updateCurve(0, linear(45, 85, 1200, 7300));

    EXPECT_EQ(f.manager().currentProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.settings.fanProfile.get(), FanProfile::custom);
    EXPECT_EQ(f.manager().evaluatedLeftTargetRPM.get(), 7300);
}

TEST(FanControlManager, DefersAnEditToTheTimerWhenAlreadyCustom) {
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

}  // namespace
}  // namespace kestro
