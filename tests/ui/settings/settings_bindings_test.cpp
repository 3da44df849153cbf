#include "core/model/menubar_modules.h"
#include "tests/ui/settings/settings_view_test.h"
#include "ui/controls/option_tile.h"
#include "ui/controls/swatch.h"
#include "ui/controls/tab_strip.h"
#include "ui/settings/module_row.h"

namespace kestro {
namespace {

/// Operates every control by mouse and by keyboard and checks its setting, the stored preference, and that the
/// control follows changes made elsewhere.
class SettingsBindingsTest : public SettingsViewFixture {
protected:
    PreferenceValue kept(std::string_view key) { return stored().values.at(std::string(key)); }

    template <ClosedEnumeration E>
    void expectKept(const Setting<E>& setting, E value) {
        EXPECT_EQ(setting.get(), value) << rawValue(value);
        const std::string json = '"' + std::string(rawValue(value)) + '"';
        EXPECT_EQ(kept(setting.key()), PreferenceValue(PreferenceData(json.begin(), json.end())))
            << rawValue(value);
    }

    void checkSwitch(const char* title, Setting<bool>& setting) {
        SettingRow& control = row(title);
        const auto check = [&](bool wanted) {
            EXPECT_EQ(setting.get(), wanted) << title;
            EXPECT_EQ(kept(setting.key()), PreferenceValue(wanted)) << title;
            EXPECT_EQ(control.isOn(), wanted) << title;
        };
        const bool before = setting.get();
        click(control);
        check(!before);
        press(control, Qt::Key_Space);
        check(before);
        setting.set(!before);
        EXPECT_EQ(control.isOn(), !before) << title;
    }

    template <ClosedEnumeration E>
    void checkSegments(const char* name, Setting<E>& setting) {
        SegmentedChoice& control = segments(name);
        const auto& cases = allCases<E>();
        const int count = static_cast<int>(cases.size());
        setting.set(cases.back());
        for (int i = 0; i < count; ++i) {
            clickSegment(control, i, count);
            expectKept(setting, cases[static_cast<std::size_t>(i)]);
        }
        press(control, Qt::Key_Home);
        expectKept(setting, cases.front());
        press(control, Qt::Key_Right);
        expectKept(setting, cases[1]);
        press(control, Qt::Key_End);
        expectKept(setting, cases.back());
        press(control, Qt::Key_Left);
        expectKept(setting, cases[cases.size() - 2]);
        for (const E value : cases) {
            setting.set(value);
            EXPECT_EQ(control.chosen(), static_cast<int>(value)) << rawValue(value);
        }
    }

    /// Checks mutually exclusive controls, named after the cases of their setting.
    template <typename W, ClosedEnumeration E>
    void checkOptions(Setting<E>& setting, const std::vector<E>& shown, const std::function<void(E)>& assign) {
        const auto control = [this](E value) -> W& { return named<W>(std::string(rawValue(value)).c_str()); };
        assign(shown.back());
        for (const E value : shown) {
            click(control(value));
            expectKept(setting, value);
        }
        for (const E value : shown) {
            press(control(value), Qt::Key_Space);
            expectKept(setting, value);
        }
        press(control(shown.back()), Qt::Key_Left);
        expectKept(setting, shown[shown.size() - 2]);
        press(control(shown[shown.size() - 2]), Qt::Key_Down);
        expectKept(setting, shown.back());
        for (const E chosen : shown) {
            assign(chosen);
            for (const E value : shown) {
                EXPECT_EQ(control(value).accessibleInfo().checked, value == chosen) << rawValue(value);
            }
        }
    }

    template <typename W, ClosedEnumeration E>
    void checkOptions(Setting<E>& setting) {
        const auto& cases = allCases<E>();
        checkOptions<W, E>(setting, {cases.begin(), cases.end()}, [&setting](E value) { setting.set(value); });
    }

    void checkSlider(const char* name, const SliderRange& range, const std::function<double()>& value) {
        Slider& control = slider(name);
        const double y = control.height() / 2.0;
        EXPECT_EQ(control.range(), range) << name;
        send(control, QEvent::MouseButtonPress, QPointF(control.width() - 1, y), Qt::LeftButton);
        EXPECT_EQ(value(), range.maximum) << name;
        send(control, QEvent::MouseMove, QPointF(control.width() / 2.0, y), Qt::LeftButton);
        EXPECT_EQ(value(), range.nearest((range.minimum + range.maximum) / 2)) << name;
        send(control, QEvent::MouseMove, QPointF(-40, y), Qt::LeftButton);
        send(control, QEvent::MouseButtonRelease, QPointF(-40, y), Qt::NoButton);
        EXPECT_EQ(value(), range.minimum) << name;
        press(control, Qt::Key_Right);
        EXPECT_EQ(value(), range.minimum + range.step) << name;
        press(control, Qt::Key_PageUp);
        EXPECT_EQ(value(), range.minimum + 6 * range.step) << name;
        press(control, Qt::Key_PageDown);
        press(control, Qt::Key_Left);
        EXPECT_EQ(value(), range.minimum) << name;
        press(control, Qt::Key_End);
        EXPECT_EQ(value(), range.maximum) << name;
    }

    void openWithTwoFans() {
        open(SettingsTab::cooling, [](SimulatedMac& mac) { mac.smc.setFans(std::array{1420.0F, 1512.0F}); });
    }

    /// The active curve; expects that the next start reads the same one.
    const FanCurveConfig& keptCurve() {
        EXPECT_EQ(restarted().leftFanCurve.get(), fans().leftCurve.get());
        return fans().leftCurve.get();
    }
};

TEST_F(SettingsBindingsTest, ChoosesEveryTab) {
    open(SettingsTab::menubar);
    auto& strip = *view_->findChild<TabStrip*>();
    const auto areas = tabAreas(strip.size(), 7);
    press(strip, Qt::Key_End);

    for (const SettingsTab tab : allCases<SettingsTab>()) {
        const QPointF at = areas[static_cast<std::size_t>(tab)].center();
        send(strip, QEvent::MouseButtonPress, at, Qt::LeftButton);
        send(strip, QEvent::MouseButtonRelease, at, Qt::NoButton);
        expectKept(settings().selectedSettingsTab, tab);
        EXPECT_TRUE(view_->content(tab)->isVisible());
    }
    press(strip, Qt::Key_End);
    expectKept(settings().selectedSettingsTab, SettingsTab::sensors);
    press(strip, Qt::Key_Left);
    expectKept(settings().selectedSettingsTab, SettingsTab::appearance);
}

TEST_F(SettingsBindingsTest, BindsTheMenubarTab) {
    open(SettingsTab::menubar);

    checkSwitch("Dedicated Keep-Awake Status Bar Extra", settings().showDedicatedKeepAwakeItem);
    checkSwitch("Dedicated Cooling & Power Status Bar Extra", settings().showDedicatedFanItem);
    checkSegments("Separator Delimiter", settings().menubarDelimiter);
    checkSwitch("Show Metric Prefixes (e.g. RAM, CPU)", settings().showMenubarLabels);
    checkSegments("Refresh & Energy Profile", settings().pollingProfile);
}

TEST_F(SettingsBindingsTest, BindsEveryModule) {
    open(SettingsTab::menubar);
    Setting<MenubarModules>& modules = settings().activeMenubarModules;
    const auto all = allCases<MenubarModuleType>();
    for (ModuleRow* option : view_->findChildren<ModuleRow*>()) {
        const MenubarModuleType module = option->module();
        const MenubarModuleType other = module == all.front() ? all.back() : all.front();
        modules.set({other});

        click(*option);
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{other, module}));
        press(option->upButton(), Qt::Key_Space);
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{module, other}));
        click(option->downButton());
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{other, module}));
        click(option->upButton());
        press(option->downButton(), Qt::Key_Return);
        EXPECT_EQ(modules.get(), (MenubarModules{other, module}));
        press(*option, Qt::Key_Space);
        EXPECT_EQ(restarted().activeMenubarModules.get(), (MenubarModules{other}));
        modules.set({other, module});
        EXPECT_TRUE(option->isOn());
    }
}

TEST_F(SettingsBindingsTest, BindsTheKeepAwakeTab) {
    open(SettingsTab::keepAwake);
    KeepAwakeManager& manager = machine_->keepAwake();

    checkOptions<SettingRow, KeepAwakeTarget>(
        settings().keepAwakeTargetMode, {KeepAwakeTarget::systemOnly, KeepAwakeTarget::displayAndSystem},
        [&manager](KeepAwakeTarget target) { manager.setTargetMode(target); });
    checkSegments("Default Session Duration", settings().defaultKeepAwakeDuration);
    checkSwitch("Deactivate When Battery Falls Below Threshold", settings().keepAwakeAutoDisableOnBattery);
    checkSlider("Cutoff Level:", {5, 50, 5}, [this] {
        EXPECT_EQ(kept("kestro.keepAwakeBatteryThreshold"),
                  PreferenceValue(settings().keepAwakeBatteryThreshold.get()));
        return settings().keepAwakeBatteryThreshold.get();
    });
    settings().keepAwakeBatteryThreshold.set(35);
    EXPECT_EQ(slider("Cutoff Level:").value(), 35);
    EXPECT_TRUE(shows("35%"));
    press(button("Activate Now"), Qt::Key_Space);
    EXPECT_TRUE(manager.isActive.get());
    press(button("Deactivate"), Qt::Key_Return);
    EXPECT_FALSE(manager.isActive.get());
}

TEST_F(SettingsBindingsTest, ShowsAStoredCutoffBeyondTheSliderUnclamped) {
    open(SettingsTab::keepAwake);

    settings().keepAwakeBatteryThreshold.set(80);

    EXPECT_TRUE(shows("80%"));
    EXPECT_EQ(slider("Cutoff Level:").value(), 50);
    EXPECT_EQ(settings().keepAwakeBatteryThreshold.get(), 80);
}

TEST_F(SettingsBindingsTest, BindsTheProfilesAndTheLink) {
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

TEST_F(SettingsBindingsTest, AppliesEveryPreset) {
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

TEST_F(SettingsBindingsTest, EditsSensorAndShape) {
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

TEST_F(SettingsBindingsTest, MovesEverySliderOfTheCurve) {
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

TEST_F(SettingsBindingsTest, RequestsEveryPowerMode) {
    open(SettingsTab::power);
    const auto settle = [this] {
        machine_->mac.runPending();
        machine_->advance(std::chrono::seconds(6));
    };

    for (const SystemPowerMode mode : allCases<SystemPowerMode>()) {
        SettingRow& option = row(std::string(rawValue(mode)).c_str());
        click(option);
        settle();
        EXPECT_EQ(machine_->powerManager().currentMode.get(), mode);
        EXPECT_TRUE(option.isOn());
    }
    press(row("Balanced (Automatic)"), Qt::Key_Return);
    settle();
    EXPECT_EQ(machine_->powerManager().currentMode.get(), SystemPowerMode::balanced);
    press(row("Low Power"), Qt::Key_Space);
    settle();
    EXPECT_TRUE(row("Low Power").isOn());
}

TEST_F(SettingsBindingsTest, BindsTheDashboardTab) {
    open(SettingsTab::dashboard);
    constexpr std::array<std::int64_t, 4> counts{5, 6, 8, 10};

    checkSwitch("Compute & Silicon Core Topology", settings().showCompute);
    checkSwitch("Cooling & Thermal Architecture", settings().showCooling);
    checkSwitch("Unified Memory & APFS Storage", settings().showMemory);
    checkSwitch("Network Bandwidth & Power Delivery", settings().showNetwork);
    checkSwitch("Live Activity & Top Consumers Space", settings().showTopProcesses);
    checkSegments("Default Metric:", settings().processSortMetric);
    checkSegments("Temperature Units:", settings().temperatureUnit);
    checkSwitch("Float Dashboard On Top (Pinned)", settings().isPinned);
    SegmentedChoice& count = segments("Processes Displayed:");
    press(count, Qt::Key_End);
    for (int i = 0; i < 4; ++i) {
        const std::int64_t wanted = counts[static_cast<std::size_t>(i)];
        clickSegment(count, i, 4);
        EXPECT_EQ(kept("kestro.processCountLimit"), PreferenceValue(wanted));
    }
    press(count, Qt::Key_Home);
    EXPECT_EQ(settings().processCountLimit.get(), 5);
    press(count, Qt::Key_Right);
    EXPECT_EQ(settings().processCountLimit.get(), 6);
}

TEST_F(SettingsBindingsTest, BindsTheAppearanceTab) {
    open(SettingsTab::appearance);

    checkOptions<Swatch>(settings().themePalette);
    checkSegments("Dot Intensity", settings().halftoneIntensity);
    checkOptions<OptionTile>(settings().halftonePattern);
    checkSwitch("Progressive Edge Blur Fades", settings().progressiveBlurFade);
    checkOptions<OptionTile>(settings().glassMaterial);
}

}  // namespace
}  // namespace kestro
