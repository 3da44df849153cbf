#include "core/model/fan_curve.h"
#include "tests/ui/settings/settings_bindings_fixture.h"
#include "ui/controls/toggle_switch.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace kestro {
namespace {

/// The tab for cooling on a machine with two fans.
class CoolingBindingsTest : public SettingsBindingsTest {
protected:
    void openWithTwoFans() {
        open(SettingsTab::cooling, [](SimulatedMac& mac) { mac.smc.setFans(std::array{1420.0F, 1512.0F}); });
    }

    /// The active curve; expects that the next start reads the same one.
    const FanCurveConfig& keptCurve() {
        EXPECT_EQ(restarted().leftFanCurve.get(), fans().leftCurve.get());
        return fans().leftCurve.get();
    }
};

TEST_F(CoolingBindingsTest, BindsTheProfilesAndTheLink) {
    openWithTwoFans();
    const auto& profiles = allCases<FanProfile>();

    checkOptions<Button, FanProfile>(settings().fanProfile, {profiles.begin(), profiles.end()},
                                     [this](FanProfile profile) { fans().setProfile(profile); });
    fans().setProfile(FanProfile::silent);
    press(button("Engage Custom Curves"), Qt::Key_Return);
    expectKept(settings().fanProfile, FanProfile::custom);
    press(named<ToggleSwitch>("Fans Linked"), Qt::Key_Space);
    EXPECT_FALSE(restarted().isFansLinked.get());
    click(named<ToggleSwitch>("Fans Linked"));
    EXPECT_TRUE(restarted().isFansLinked.get());
    SegmentedChoice& fan = segments("Fan");
    press(fan, Qt::Key_End);
    EXPECT_EQ(restarted().selectedFanIndex.get(), 1);
    clickSegment(fan, 0, 2);
    EXPECT_EQ(restarted().selectedFanIndex.get(), 0);
    settings().selectedFanIndex.set(1);
    EXPECT_EQ(fan.chosen(), 1);
}

TEST_F(CoolingBindingsTest, AppliesEveryPreset) {
    openWithTwoFans();
    const FanTelemetry fan = fans().currentFans.get().front();

    for (const CurvePreset preset : allCases<CurvePreset>()) {
        Button& option = button(std::string(rawValue(preset)).c_str());
        for (const bool byKey : {false, true}) {
            FanCurveConfig other = fans().leftCurve.get();
            other.lowTemp = 31;
            fans().updateCurve(0, other);
            if (byKey) {
                press(option, Qt::Key_Space);
            } else {
                click(option);
            }
            EXPECT_EQ(keptCurve(), applyTo(preset, fan.minRPM, fan.maxRPM));
            EXPECT_TRUE(option.isOn());
        }
        fans().applyPreset(CurvePreset::quietStudio);
        EXPECT_EQ(option.isOn(), preset == CurvePreset::quietStudio);
    }
}

TEST_F(CoolingBindingsTest, EditsSensorAndShape) {
    openWithTwoFans();
    const auto edit = [this](auto field, const auto& cases) {
        click(row(std::string(rawValue(cases[1]))
                      .c_str()));  // starts from another value, since choosing the current one is no edit
        for (const auto value : cases) {
            const std::string label(rawValue(value));
            click(row(label.c_str()));
            EXPECT_EQ(keptCurve().*field, value);
        }
        press(row(std::string(rawValue(cases.front())).c_str()), Qt::Key_Space);
        EXPECT_EQ(keptCurve().*field, cases.front());
        press(row(std::string(rawValue(cases.front())).c_str()), Qt::Key_Down);
        EXPECT_EQ(keptCurve().*field, cases[1]);
        for (const auto value : cases) {
            FanCurveConfig config = fans().leftCurve.get();
            config.*field = value;
            fans().updateCurve(0, config);
            EXPECT_TRUE(row(std::string(rawValue(value)).c_str()).isOn());
        }
    };

    edit(&FanCurveConfig::sensorSource, allCases<SensorSource>());
    edit(&FanCurveConfig::curveShape, std::array{CurveShape::stepped, CurveShape::linear, CurveShape::sCurve});
}

TEST_F(CoolingBindingsTest, MovesEverySliderOfTheCurve) {
    openWithTwoFans();

    checkSlider("Baseline Idle Temp (T_low):", {30, 65, 1}, [this] { return keptCurve().lowTemp; });
    checkSlider("Full Ramp Ceiling (T_high):", {66, 100, 1}, [this] { return keptCurve().highTemp; });
    checkSlider("Ramp Smoothing Window:", {0, 10, 0.5}, [this] { return restarted().rampSmoothingSeconds.get(); });
    press(named<ToggleSwitch>("Acoustic Ceiling Cap:"), Qt::Key_Space);
    EXPECT_TRUE(keptCurve().acousticCeilingEnabled);
    const FanCurveConfig curve = fans().leftCurve.get();
    checkSlider("Acoustic Ceiling Cap:", {curve.minRPM, curve.maxRPM, 100},
                [this] { return keptCurve().acousticCeilingRPM; });
    EXPECT_TRUE(shows("7300 RPM"));
    click(named<ToggleSwitch>("Acoustic Ceiling Cap:"));
    EXPECT_FALSE(keptCurve().acousticCeilingEnabled);
    FanCurveConfig other = fans().leftCurve.get();
    other.acousticCeilingEnabled = true;
    other.acousticCeilingRPM = 5200;
    other.lowTemp = 33;
    other.highTemp = 71;
    fans().updateCurve(0, other);
    EXPECT_EQ(slider("Acoustic Ceiling Cap:").value(), 5200);
    EXPECT_EQ(slider("Baseline Idle Temp (T_low):").value(), 33);
    EXPECT_EQ(slider("Full Ramp Ceiling (T_high):").value(), 71);
}

}  // namespace
}  // namespace kestro
