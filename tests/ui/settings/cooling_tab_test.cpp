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

TEST_F(CoolingTabTest, MovesNothingUnderThePointerWhenAnEditEngagesCustomCurves) {
    openWithTwoFans();
    fans().setProfile(FanProfile::normal);
    QApplication::processEvents();
    SettingRow& shape = row("Linear Proportional");
    const QPoint before = shape.mapTo(view_.get(), QPoint());

    click(shape);
    QApplication::processEvents();

    EXPECT_EQ(fans().currentProfile.get(), FanProfile::custom);
    EXPECT_EQ(shape.mapTo(view_.get(), QPoint()), before);
    EXPECT_TRUE(shows("Active Profile: Custom Curves. The curves below apply."));
}

TEST_F(CoolingTabTest, LinksAndUnlinksTheFans) {
    openWithTwoFans();
    ASSERT_TRUE(fans().isLinked.get());
    ToggleSwitch& link = toggle("Fans Linked");

    click(link);
    EXPECT_FALSE(fans().isLinked.get());
    EXPECT_TRUE(shows("Independent Fans"));
    EXPECT_EQ(link.accessibleInfo().name, QStringLiteral("Fans Linked"));
    EXPECT_EQ(link.accessibleInfo().checked, false);

    fans().toggleLinking();
    EXPECT_TRUE(shows("Fans Linked"));
    EXPECT_EQ(link.accessibleInfo().checked, true);
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

TEST_F(CoolingTabTest, TreatsAnUnknownFanAsTheLeftOne) {
    openWithTwoFans();
    unlink();
    settings().selectedFanIndex.set(7);

    click(row("Peak Silicon Die"));

    EXPECT_EQ(segments("Fan").chosen(), 0);
    EXPECT_EQ(fans().leftCurve.get().sensorSource, SensorSource::peakDie);
    EXPECT_EQ(fans().rightCurve.get().sensorSource, SensorSource::averageSoC);
}

TEST_F(CoolingTabTest, AppliesPresetsAndShowsTheActiveOne) {
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

TEST_F(CoolingTabTest, HighlightsTheBalancedPresetForANewUser) {
    openWithTwoFans();

    EXPECT_TRUE(button("Balanced Studio").isOn());
    EXPECT_FALSE(button("Quiet Studio").isOn());
}

TEST_F(CoolingTabTest, HighlightsNoPresetThatDiffersFromTheStoredCurves) {
    open(SettingsTab::cooling, [](SimulatedMac& mac) {
        mac.smc.setFans(std::array{1420.0F, 1512.0F});
        FanCurveConfig kept;
        kept.sensorSource = SensorSource::peakDie;
        UserSettings(mac.userDefaults).leftFanCurve.set(kept);
    });
    ASSERT_EQ(fans().activePreset.get(), CurvePreset::balancedEveryday);
    ASSERT_EQ(fans().leftCurve.get().sensorSource, SensorSource::peakDie);

    EXPECT_FALSE(button("Balanced Studio").isOn());
    click(button("Balanced Studio"));
    EXPECT_TRUE(button("Balanced Studio").isOn());
}

TEST_F(CoolingTabTest, HighlightsThePresetOfTheEditedFan) {
    open(SettingsTab::cooling, [](SimulatedMac& mac) {
        mac.smc.setFans(std::array{1420.0F, 1512.0F});
        UserSettings kept(mac.userDefaults);
        kept.isFansLinked.set(false);
        FanCurveConfig right = FanCurveConfig::rightDefault();
        right.highTemp = 90;
        kept.rightFanCurve.set(right);
    });
    EXPECT_TRUE(button("Balanced Studio").isOn());

    settings().selectedFanIndex.set(1);

    EXPECT_FALSE(button("Balanced Studio").isOn());
}

TEST(IsInForceTest, ComparesOnlyWhatAPresetSets) {
    const FanCurveConfig quiet = applyTo(CurvePreset::quietStudio, 1350, 7300);
    const auto without = [&quiet](auto change) {
        FanCurveConfig other = quiet;
        change(other);
        return isInForce(CurvePreset::quietStudio, other);
    };

    EXPECT_TRUE(isInForce(CurvePreset::quietStudio, quiet));
    EXPECT_TRUE(isInForce(CurvePreset::balancedEveryday, FanCurveConfig::leftDefault()));
    EXPECT_FALSE(isInForce(CurvePreset::balancedEveryday, quiet));
    EXPECT_FALSE(without([](auto& other) { other.sensorSource = SensorSource::peakDie; }));
    EXPECT_FALSE(without([](auto& other) { other.curveShape = CurveShape::linear; }));
    EXPECT_FALSE(without([](auto& other) { other.lowTemp = 54; }));
    EXPECT_FALSE(without([](auto& other) { other.highTemp = 91; }));
    EXPECT_FALSE(without([](auto& other) { other.acousticCeilingRPM = 5100; }));
    EXPECT_FALSE(without([](auto& other) { other.acousticCeilingEnabled = false; }));
}

TEST_F(CoolingTabTest, IgnoresAnEditThatChangesNothing) {
    openWithTwoFans();
    click(button("Aggressive Cooling"));
    fans().setProfile(FanProfile::turbo);

    press(row("Peak Silicon Die"), Qt::Key_Space);
    click(row("Linear Proportional"));

    EXPECT_EQ(fans().activePreset.get(), CurvePreset::aggressiveTurbo);
    EXPECT_EQ(fans().currentProfile.get(), FanProfile::turbo);
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

TEST_F(CoolingTabTest, ShowsTheStoredCeiling) {
    openWithTwoFans();
    FanCurveConfig curve = fans().leftCurve.get();
    curve.minRPM = 1350;
    curve.acousticCeilingEnabled = true;
    curve.acousticCeilingRPM = 6000;
    fans().updateCurve(0, curve);
    Slider& ceiling = slider("Acoustic Ceiling Cap:");

    EXPECT_EQ(ceiling.value(), 6000);
    EXPECT_EQ(ceiling.accessibleInfo().value, QStringLiteral("6000 RPM"));
    EXPECT_TRUE(shows("6000 RPM"));
    press(ceiling, Qt::Key_Right);
    EXPECT_EQ(fans().leftCurve.get().acousticCeilingRPM, 6050);
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
