#pragma once

#include "core/base/announcer.h"
#include "core/base/published.h"
#include "core/model/fan_curve.h"
#include "core/model/keep_awake_types.h"
#include "core/model/settings_enumerations.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace kestro {

class UserDefaults;
class UserSettings;

/// One preference: an observable value that writes through to the preferences on every assignment.
template <typename T>
class Setting {
public:
    Setting(UserSettings& store, std::string_view key, T defaultValue);
    ~Setting();
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    const T& get() const { return value_.get(); }

    /// Announces the change, publishes the value and stores it under the key, even if it is equal.
    void set(T value);

    /// Calls `callback` with the new value after every assignment.
    Subscription subscribe(std::function<void(const T&)> callback) const {
        return value_.subscribe(std::move(callback));
    }

    std::string_view key() const { return key_; }

private:
    UserSettings& store_;
    std::string_view key_;
    Published<T, Setting<T>> value_;
};

/// Every preference of the program, read once at construction and written through on every assignment. A missing
/// or unreadable stored value yields the default and is left untouched. No value is clamped. Main thread only.
/// Lives as long as the process; must not be destroyed inside one of its own notifications.
class UserSettings {
public:
    explicit UserSettings(UserDefaults& defaults);
    ~UserSettings();
    UserSettings(const UserSettings&) = delete;
    UserSettings& operator=(const UserSettings&) = delete;

    /// The process-wide store on the current platform, created on first use.
    static UserSettings& shared();

    /// Called before any preference changes. A nested change is announced after the current announcement, when
    /// that change has already been made.
    Subscription subscribeWillChange(std::function<void()> callback) const {
        return willChange_.subscribe(std::move(callback));
    }

private:
    template <typename T>
    friend class Setting;

    /// The value stored under `key`, or `defaultValue` if there is none that decodes as a T.
    template <typename T>
    T load(std::string_view key, T defaultValue) const;

    /// Stores `value` under `key`; writes nothing if it has no stored form.
    template <typename T>
    void save(const T& value, std::string_view key);

    // Declared before the settings, whose construction reads through them.
    UserDefaults& defaults_;
    Announcer<> willChange_;

public:
    Setting<SettingsTab> selectedSettingsTab{*this, "kestro.selectedSettingsTab", SettingsTab::menubar};
    Setting<ThemePalette> themePalette{*this, "kestro.themePalette", ThemePalette::cryogenic};
    Setting<TemperatureUnit> temperatureUnit{*this, "kestro.temperatureUnit", TemperatureUnit::celsius};
    Setting<FanSpeedUnit> fanSpeedUnit{*this, "kestro.fanSpeedUnit", FanSpeedUnit::kRPM};
    Setting<MenubarDisplayMode> menubarDisplayMode{*this, "kestro.menubarDisplayMode",
                                                   MenubarDisplayMode::memoryAndFan};
    Setting<MenubarIconStyle> menubarIconStyle{*this, "kestro.menubarIconStyle", MenubarIconStyle::iconsAndText};
    Setting<PollingProfile> pollingProfile{*this, "kestro.pollingProfile", PollingProfile::balanced};
    Setting<HalftoneIntensity> halftoneIntensity{*this, "kestro.halftoneIntensity", HalftoneIntensity::standard};
    Setting<HalftonePatternStyle> halftonePattern{*this, "kestro.halftonePattern", HalftonePatternStyle::band};
    Setting<GlassMaterialStyle> glassMaterial{*this, "kestro.glassMaterial", GlassMaterialStyle::deepFrosted};
    Setting<bool> progressiveBlurFade{*this, "kestro.progressiveBlurFade", true};
    Setting<bool> showCompute{*this, "kestro.showCompute", true};
    Setting<bool> showCooling{*this, "kestro.showCooling", true};
    Setting<bool> showMemory{*this, "kestro.showMemory", true};
    Setting<bool> showNetwork{*this, "kestro.showNetwork", true};
    Setting<bool> showTopProcesses{*this, "kestro.showTopProcesses", true};
    Setting<ProcessSortMetric> processSortMetric{*this, "kestro.processSortMetric", ProcessSortMetric::cpu};
    Setting<std::int64_t> processCountLimit{*this, "kestro.processCountLimit", 6};
    Setting<bool> isPinned{*this, "kestro.isPinned", false};
    Setting<std::int64_t> sparklineDurationSeconds{*this, "kestro.sparklineDuration", 30};
    Setting<std::vector<MenubarModuleType>> activeMenubarModules{
        *this,
        "kestro.activeMenubarModules",
        {MenubarModuleType::appIcon, MenubarModuleType::memory, MenubarModuleType::fanSpeed}};
    Setting<MenubarDelimiter> menubarDelimiter{*this, "kestro.menubarDelimiter", MenubarDelimiter::middleDot};
    Setting<bool> showMenubarLabels{*this, "kestro.showMenubarLabels", true};
    Setting<bool> showDedicatedKeepAwakeItem{*this, "kestro.showDedicatedKeepAwakeItem", true};
    Setting<bool> showDedicatedFanItem{*this, "kestro.showDedicatedFanItem", false};
    Setting<KeepAwakeTarget> keepAwakeTargetMode{*this, "kestro.keepAwakeTargetMode",
                                                 KeepAwakeTarget::displayAndSystem};
    Setting<KeepAwakeDuration> defaultKeepAwakeDuration{*this, "kestro.defaultKeepAwakeDuration",
                                                        KeepAwakeDuration::indefinite};
    Setting<bool> keepAwakeAutoDisableOnBattery{*this, "kestro.keepAwakeAutoDisableOnBattery", true};
    Setting<double> keepAwakeBatteryThreshold{*this, "kestro.keepAwakeBatteryThreshold", 20.0};  ///< percent
    Setting<FanProfile> fanProfile{*this, "kestro.fanProfile", FanProfile::normal};
    Setting<double> customFanRPM{*this, "kestro.customFanRPM", 3500.0};
    Setting<FanCurveConfig> leftFanCurve{*this, "kestro.leftFanCurve", FanCurveConfig::leftDefault()};
    Setting<FanCurveConfig> rightFanCurve{*this, "kestro.rightFanCurve", FanCurveConfig::rightDefault()};
    Setting<bool> isFansLinked{*this, "kestro.isFansLinked", true};
    Setting<double> rampSmoothingSeconds{*this, "kestro.rampSmoothingSeconds", 3.0};
    Setting<double> temperatureDeadband{*this, "kestro.temperatureDeadband", 2.0};  ///< degrees Celsius
    Setting<std::int64_t> selectedFanIndex{*this, "kestro.selectedFanIndex", 0};
};

}  // namespace kestro
