#include "tests/ui/settings/settings_view_test.h"

#include "ui/fancurve/fan_curve_canvas_view.h"
#include "ui/settings/fan_curve_studio.h"

namespace kestro {
namespace {

class CoolingTabTest : public SettingsViewFixture {
protected:
    void openWithFans(std::span<const float> speeds) {
        open(SettingsTab::cooling, [speeds](SimulatedMac& mac) { mac.smc.setFans(speeds); });
    }
    void openWithTwoFans() { openWithFans(std::array{1420.0F, 1512.0F}); }

    void unlink() {
        if (fans().isLinked.get()) {
            fans().toggleLinking();
        }
    }

    const FanCurveReading& chart() { return view_->findChild<FanCurveCanvasView*>()->reading(); }
    ToggleSwitch& toggle(const char* name) { return named<ToggleSwitch>(name); }
};

TEST_F(CoolingTabTest, ListsTheFans) {
    openWithTwoFans();

    for (const char* text :
         {"2 ACTIVE SILICON TURBINES", "Independent AppleSMC tachometers with dynamic PWM curves", "1420 RPM",
          "1512 RPM", "Safe: 7300", "PERFORMANCE MODE", "FAN CURVE STUDIO",
          "Independently address Left and Right exhaust fans or synchronize in linked mode",
          "PRESETS:", "DRIVING TEMPERATURE SENSOR", "RESPONSE CURVE GEOMETRY", "THERMAL THRESHOLD ANCHORS",
          "ACOUSTIC SMOOTHING & HYSTERESIS"}) {
        EXPECT_TRUE(shows(text)) << text;
    }
}

TEST_F(CoolingTabTest, ShowsThePassiveCardWithoutFans) {
    openWithFans({});

    EXPECT_TRUE(shows("PASSIVE ACOUSTIC ARCHITECTURE"));
    EXPECT_TRUE(shows("Fanless MacBook Air Design · 0.0 dB Acoustic Floor"));
    EXPECT_FALSE(shows("Safe: 7300"));
}

TEST_F(CoolingTabTest, FollowsTheSpeedsAndTheNumberOfFans) {
    openWithTwoFans();

    machine_->mac.smc.setFans(std::array{2100.0F});
    machine_->advance(std::chrono::seconds(3));
    fans().refreshHardware();

    EXPECT_TRUE(shows("1 ACTIVE SILICON TURBINES"));
    EXPECT_TRUE(shows("2100 RPM"));
    EXPECT_FALSE(shows("1512 RPM"));
}

TEST_F(CoolingTabTest, AppliesAProfileAndExplainsIt) {
    openWithTwoFans();

    click(button("Turbo"));

    EXPECT_EQ(fans().currentProfile.get(), FanProfile::turbo);
    EXPECT_EQ(restarted().fanProfile.get(), FanProfile::turbo);
    EXPECT_TRUE(button("Turbo").isOn());
    EXPECT_TRUE(shows("Active Profile: Turbo. Modifying curves below engages Custom Curves mode."));
    fans().setProfile(FanProfile::silent);
    EXPECT_TRUE(button("Silent").isOn());
    EXPECT_FALSE(button("Turbo").isOn());
}

TEST_F(CoolingTabTest, EngagesCustomCurvesAndHidesTheNote) {
    openWithTwoFans();
    Button& engage = button("Engage Custom Curves");

    click(engage);

    EXPECT_EQ(fans().currentProfile.get(), FanProfile::custom);
    EXPECT_FALSE(engage.isVisible());
}

TEST_F(CoolingTabTest, LinksAndUnlinksTheFans) {
    openWithTwoFans();
    const bool wasLinked = fans().isLinked.get();

    click(toggle(wasLinked ? "Fans Linked" : "Independent Fans"));

    EXPECT_EQ(fans().isLinked.get(), !wasLinked);
    EXPECT_TRUE(shows(wasLinked ? "Independent Fans" : "Fans Linked"));
    fans().toggleLinking();
    EXPECT_TRUE(shows(wasLinked ? "Fans Linked" : "Independent Fans"));
}

TEST_F(CoolingTabTest, EditsTheLeftCurveWhileTheFansAreLinked) {
    openWithTwoFans();
    if (!fans().isLinked.get()) {
        fans().toggleLinking();
    }
    settings().selectedFanIndex.set(1);

    click(row("Linear Proportional"));

    EXPECT_EQ(&activeEditingConfig(machine_->services()), &fans().leftCurve.get());
    EXPECT_EQ(fans().leftCurve.get().curveShape, CurveShape::linear);
    EXPECT_EQ(fans().rightCurve.get().curveShape, CurveShape::linear);
}

TEST_F(CoolingTabTest, EditsTheRightCurveAloneWhileTheFansAreIndependent) {
    openWithTwoFans();
    unlink();
    clickSegment(segments("Fan"), 1, 2);

    click(row("Stepped Acoustic Stages"));

    EXPECT_EQ(settings().selectedFanIndex.get(), 1);
    EXPECT_EQ(&activeEditingConfig(machine_->services()), &fans().rightCurve.get());
    EXPECT_EQ(fans().rightCurve.get().curveShape, CurveShape::stepped);
    EXPECT_EQ(fans().leftCurve.get().curveShape, CurveShape::sCurve);
    EXPECT_EQ(fans().currentProfile.get(), FanProfile::custom);
}

TEST_F(CoolingTabTest, TakesAnUnknownFanForTheLeftOne) {
    openWithTwoFans();
    unlink();
    settings().selectedFanIndex.set(7);

    click(row("Peak Silicon Die"));

    EXPECT_EQ(segments("Fan").chosen(), 0);
    EXPECT_EQ(fans().leftCurve.get().sensorSource, SensorSource::peakDie);
    EXPECT_EQ(fans().rightCurve.get().sensorSource, SensorSource::averageSoC);
}

TEST_F(CoolingTabTest, AppliesPresetsAndShowsTheOneInForce) {
    openWithTwoFans();

    click(button("Aggressive Cooling"));

    EXPECT_EQ(fans().activePreset.get(), CurvePreset::aggressiveTurbo);
    EXPECT_TRUE(button("Aggressive Cooling").isOn());
    EXPECT_TRUE(row("Peak Silicon Die").isOn());
    EXPECT_TRUE(row("Linear Proportional").isOn());
    EXPECT_EQ(slider("Baseline Idle Temp (T_low):").value(), 40);
    click(row("Acoustic S-Curve"));
    EXPECT_FALSE(button("Aggressive Cooling").isOn());
}

TEST_F(CoolingTabTest, MovesTheThresholdsWithinRangesThatCannotCross) {
    openWithTwoFans();
    Slider& low = slider("Baseline Idle Temp (T_low):");
    Slider& high = slider("Full Ramp Ceiling (T_high):");

    press(low, Qt::Key_End);
    press(high, Qt::Key_Home);
    press(high, Qt::Key_Right);

    EXPECT_EQ(fans().leftCurve.get().lowTemp, 65);
    EXPECT_EQ(fans().leftCurve.get().highTemp, 67);
    EXPECT_LT(low.range().maximum, high.range().minimum);
    EXPECT_TRUE(shows("65°C"));
    FanCurveConfig other = fans().leftCurve.get();
    other.lowTemp = 44;
    fans().updateCurve(0, other);
    EXPECT_EQ(low.value(), 44);
}

TEST_F(CoolingTabTest, SetsTheSmoothing) {
    openWithTwoFans();
    Slider& window = slider("Ramp Smoothing Window:");
    settings().rampSmoothingSeconds.set(3);
    EXPECT_EQ(window.value(), 3);

    press(window, Qt::Key_Right);

    EXPECT_EQ(settings().rampSmoothingSeconds.get(), 3.5);
    EXPECT_TRUE(shows("3.5s"));
}

TEST_F(CoolingTabTest, CapsTheSpeedOnlyWhileTheCeilingIsOn) {
    openWithTwoFans();
    EXPECT_TRUE(shows("Unconstrained turbine ceiling (Full 100% capacity)"));

    click(toggle("Acoustic Ceiling Cap:"));
    Slider& ceiling = slider("Acoustic Ceiling Cap:");
    press(ceiling, Qt::Key_Home);
    press(ceiling, Qt::Key_Right);

    const FanCurveConfig& curve = fans().leftCurve.get();
    EXPECT_TRUE(curve.acousticCeilingEnabled);
    EXPECT_EQ(curve.acousticCeilingRPM, curve.minRPM + 100);
    EXPECT_EQ(ceiling.range(), (SliderRange{curve.minRPM, curve.maxRPM, 100}));
    EXPECT_FALSE(shows("Unconstrained turbine ceiling (Full 100% capacity)"));
}

TEST_F(CoolingTabTest, DrawsTheEditedCurveAndFollowsTheEngine) {
    openWithTwoFans();
    unlink();
    settings().selectedFanIndex.set(1);

    EXPECT_EQ(chart().config, fans().rightCurve.get());
    EXPECT_EQ(chart().currentRPM, 1512);
    EXPECT_EQ(chart().targetRPM, chart().config.evaluateRPM(chart().currentTemp));
    EXPECT_EQ(chart().maxDisplayRPM, 8000);
    machine_->mac.smc.setFans(std::array{1420.0F, 3000.0F});
    machine_->advance(std::chrono::seconds(3));
    EXPECT_EQ(chart().currentRPM, 3000);
}

}  // namespace
}  // namespace kestro
