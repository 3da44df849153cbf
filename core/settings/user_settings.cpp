#include "core/settings/user_settings.h"

#include "core/platform/platform.h"
#include "core/platform/user_defaults.h"
#include "core/settings/preference_codec.h"

#include <utility>

namespace kestro {

template <typename T>
T UserSettings::load(std::string_view key, T defaultValue) const {
    const auto stored = defaults_.object(key);
    auto value = stored ? PreferenceCodec<T>::decode(*stored) : std::nullopt;
    return value ? *std::move(value) : std::move(defaultValue);
}

template <typename T>
void UserSettings::save(const T& value, std::string_view key) {
    if (auto stored = PreferenceCodec<T>::encode(value)) {
        defaults_.set(key, *std::move(stored));
    }
}

template <typename T>
Setting<T>::Setting(UserSettings& store, std::string_view key, T defaultValue)
    : store_(store), key_(key), value_(store.load<T>(key, std::move(defaultValue))) {}

template <typename T>
Setting<T>::~Setting() = default;

template <typename T>
void Setting<T>::set(T value) {
    store_.willChange_.announce();
    value_.set(std::move(value));
    // Read it back: a subscriber may have assigned a newer value, and the newest must be the one stored.
    store_.save(value_.get(), key_);
}

template class Setting<SettingsTab>;
template class Setting<ThemePalette>;
template class Setting<TemperatureUnit>;
template class Setting<FanSpeedUnit>;
template class Setting<MenubarDisplayMode>;
template class Setting<MenubarIconStyle>;
template class Setting<PollingProfile>;
template class Setting<HalftoneIntensity>;
template class Setting<HalftonePatternStyle>;
template class Setting<GlassMaterialStyle>;
template class Setting<bool>;
template class Setting<ProcessSortMetric>;
template class Setting<std::int64_t>;
template class Setting<std::vector<MenubarModuleType>>;
template class Setting<MenubarDelimiter>;
template class Setting<KeepAwakeTarget>;
template class Setting<KeepAwakeDuration>;
template class Setting<double>;
template class Setting<FanProfile>;
template class Setting<FanCurveConfig>;

UserSettings::UserSettings(UserDefaults& defaults)
    : defaults_(defaults),
      selectedSettingsTab(*this, kSelectedSettingsTab, SettingsTab::menubar),
      themePalette(*this, kThemePalette, ThemePalette::cryogenic),
      temperatureUnit(*this, kTemperatureUnit, TemperatureUnit::celsius),
      fanSpeedUnit(*this, kFanSpeedUnit, FanSpeedUnit::kRPM),
      menubarDisplayMode(*this, kMenubarDisplayMode, MenubarDisplayMode::memoryAndFan),
      menubarIconStyle(*this, kMenubarIconStyle, MenubarIconStyle::iconsAndText),
      pollingProfile(*this, kPollingProfile, PollingProfile::balanced),
      halftoneIntensity(*this, kHalftoneIntensity, HalftoneIntensity::standard),
      halftonePattern(*this, kHalftonePattern, HalftonePatternStyle::band),
      glassMaterial(*this, kGlassMaterial, GlassMaterialStyle::deepFrosted),
      progressiveBlurFade(*this, kProgressiveBlurFade, true),
      showCompute(*this, kShowCompute, true),
      showCooling(*this, kShowCooling, true),
      showMemory(*this, kShowMemory, true),
      showNetwork(*this, kShowNetwork, true),
      showTopProcesses(*this, kShowTopProcesses, true),
      processSortMetric(*this, kProcessSortMetric, ProcessSortMetric::cpu),
      processCountLimit(*this, kProcessCountLimit, 6),
      isPinned(*this, kIsPinned, false),
      sparklineDurationSeconds(*this, kSparklineDuration, 30),
      activeMenubarModules(*this, kActiveMenubarModules,
                           {MenubarModuleType::appIcon, MenubarModuleType::memory, MenubarModuleType::fanSpeed}),
      menubarDelimiter(*this, kMenubarDelimiter, MenubarDelimiter::middleDot),
      showMenubarLabels(*this, kShowMenubarLabels, true),
      showDedicatedKeepAwakeItem(*this, kShowDedicatedKeepAwakeItem, true),
      showDedicatedFanItem(*this, kShowDedicatedFanItem, false),
      keepAwakeTargetMode(*this, kKeepAwakeTargetMode, KeepAwakeTarget::displayAndSystem),
      defaultKeepAwakeDuration(*this, kDefaultKeepAwakeDuration, KeepAwakeDuration::indefinite),
      keepAwakeAutoDisableOnBattery(*this, kKeepAwakeAutoDisableOnBattery, true),
      keepAwakeBatteryThreshold(*this, kKeepAwakeBatteryThreshold, 20.0),
      fanProfile(*this, kFanProfile, FanProfile::normal),
      customFanRPM(*this, kCustomFanRPM, 3500.0),
      leftFanCurve(*this, kLeftFanCurve, FanCurveConfig::leftDefault()),
      rightFanCurve(*this, kRightFanCurve, FanCurveConfig::rightDefault()),
      isFansLinked(*this, kIsFansLinked, true),
      rampSmoothingSeconds(*this, kRampSmoothingSeconds, 3.0),
      temperatureDeadband(*this, kTemperatureDeadband, 2.0),
      selectedFanIndex(*this, kSelectedFanIndex, 0) {}

UserSettings::~UserSettings() = default;

UserSettings& UserSettings::shared() {
    // Never destroyed: views and managers may still hold subscriptions while the process ends.
    static auto* const settings = new UserSettings(Platform::current().userDefaults);
    return *settings;
}

}  // namespace kestro
