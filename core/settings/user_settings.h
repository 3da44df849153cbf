#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "core/base/announcer.h"
#include "core/base/published.h"
#include "core/model/fan_curve.h"
#include "core/model/keep_awake_types.h"
#include "core/model/settings_enumerations.h"

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
    Published<T> value_;
};

// Instantiated once, in the source: most files use some of these.
extern template class Setting<SettingsTab>;
extern template class Setting<ThemePalette>;
extern template class Setting<TemperatureUnit>;
extern template class Setting<FanSpeedUnit>;
extern template class Setting<MenubarDisplayMode>;
extern template class Setting<MenubarIconStyle>;
extern template class Setting<PollingProfile>;
extern template class Setting<HalftoneIntensity>;
extern template class Setting<HalftonePatternStyle>;
extern template class Setting<GlassMaterialStyle>;
extern template class Setting<bool>;
extern template class Setting<ProcessSortMetric>;
extern template class Setting<std::int64_t>;
extern template class Setting<std::vector<MenubarModuleType>>;
extern template class Setting<MenubarDelimiter>;
extern template class Setting<KeepAwakeTarget>;
extern template class Setting<KeepAwakeDuration>;
extern template class Setting<double>;
extern template class Setting<FanProfile>;
extern template class Setting<FanCurveConfig>;

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

    static constexpr std::string_view kSelectedSettingsTab = "kestro.selectedSettingsTab";
    static constexpr std::string_view kThemePalette = "kestro.themePalette";
    static constexpr std::string_view kTemperatureUnit = "kestro.temperatureUnit";
    static constexpr std::string_view kFanSpeedUnit = "kestro.fanSpeedUnit";
    static constexpr std::string_view kMenubarDisplayMode = "kestro.menubarDisplayMode";
    static constexpr std::string_view kMenubarIconStyle = "kestro.menubarIconStyle";
    static constexpr std::string_view kPollingProfile = "kestro.pollingProfile";
    static constexpr std::string_view kHalftoneIntensity = "kestro.halftoneIntensity";
    static constexpr std::string_view kHalftonePattern = "kestro.halftonePattern";
    static constexpr std::string_view kGlassMaterial = "kestro.glassMaterial";
    static constexpr std::string_view kProgressiveBlurFade = "kestro.progressiveBlurFade";
    static constexpr std::string_view kShowCompute = "kestro.showCompute";
    static constexpr std::string_view kShowCooling = "kestro.showCooling";
    static constexpr std::string_view kShowMemory = "kestro.showMemory";
    static constexpr std::string_view kShowNetwork = "kestro.showNetwork";
    static constexpr std::string_view kShowTopProcesses = "kestro.showTopProcesses";
    static constexpr std::string_view kProcessSortMetric = "kestro.processSortMetric";
    static constexpr std::string_view kProcessCountLimit = "kestro.processCountLimit";
    static constexpr std::string_view kIsPinned = "kestro.isPinned";
    static constexpr std::string_view kSparklineDuration = "kestro.sparklineDuration";
    static constexpr std::string_view kActiveMenubarModules = "kestro.activeMenubarModules";
    static constexpr std::string_view kMenubarDelimiter = "kestro.menubarDelimiter";
    static constexpr std::string_view kShowMenubarLabels = "kestro.showMenubarLabels";
    static constexpr std::string_view kShowDedicatedKeepAwakeItem = "kestro.showDedicatedKeepAwakeItem";
    static constexpr std::string_view kShowDedicatedFanItem = "kestro.showDedicatedFanItem";
    static constexpr std::string_view kKeepAwakeTargetMode = "kestro.keepAwakeTargetMode";
    static constexpr std::string_view kDefaultKeepAwakeDuration = "kestro.defaultKeepAwakeDuration";
    static constexpr std::string_view kKeepAwakeAutoDisableOnBattery = "kestro.keepAwakeAutoDisableOnBattery";
    static constexpr std::string_view kKeepAwakeBatteryThreshold = "kestro.keepAwakeBatteryThreshold";
    static constexpr std::string_view kFanProfile = "kestro.fanProfile";
    static constexpr std::string_view kCustomFanRPM = "kestro.customFanRPM";
    static constexpr std::string_view kLeftFanCurve = "kestro.leftFanCurve";
    static constexpr std::string_view kRightFanCurve = "kestro.rightFanCurve";
    static constexpr std::string_view kIsFansLinked = "kestro.isFansLinked";
    static constexpr std::string_view kRampSmoothingSeconds = "kestro.rampSmoothingSeconds";
    static constexpr std::string_view kTemperatureDeadband = "kestro.temperatureDeadband";
    static constexpr std::string_view kSelectedFanIndex = "kestro.selectedFanIndex";

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
    Setting<SettingsTab> selectedSettingsTab;
    Setting<ThemePalette> themePalette;
    Setting<TemperatureUnit> temperatureUnit;
    Setting<FanSpeedUnit> fanSpeedUnit;
    Setting<MenubarDisplayMode> menubarDisplayMode;
    Setting<MenubarIconStyle> menubarIconStyle;
    Setting<PollingProfile> pollingProfile;
    Setting<HalftoneIntensity> halftoneIntensity;
    Setting<HalftonePatternStyle> halftonePattern;
    Setting<GlassMaterialStyle> glassMaterial;
    Setting<bool> progressiveBlurFade;
    Setting<bool> showCompute;
    Setting<bool> showCooling;
    Setting<bool> showMemory;
    Setting<bool> showNetwork;
    Setting<bool> showTopProcesses;
    Setting<ProcessSortMetric> processSortMetric;
    Setting<std::int64_t> processCountLimit;
    Setting<bool> isPinned;
    Setting<std::int64_t> sparklineDurationSeconds;
    Setting<std::vector<MenubarModuleType>> activeMenubarModules;
    Setting<MenubarDelimiter> menubarDelimiter;
    Setting<bool> showMenubarLabels;
    Setting<bool> showDedicatedKeepAwakeItem;
    Setting<bool> showDedicatedFanItem;
    Setting<KeepAwakeTarget> keepAwakeTargetMode;
    Setting<KeepAwakeDuration> defaultKeepAwakeDuration;
    Setting<bool> keepAwakeAutoDisableOnBattery;
    Setting<double> keepAwakeBatteryThreshold;  ///< percent
    Setting<FanProfile> fanProfile;
    Setting<double> customFanRPM;
    Setting<FanCurveConfig> leftFanCurve;
    Setting<FanCurveConfig> rightFanCurve;
    Setting<bool> isFansLinked;
    Setting<double> rampSmoothingSeconds;
    Setting<double> temperatureDeadband;  ///< degrees Celsius
    Setting<std::int64_t> selectedFanIndex;
};

}  // namespace kestro
