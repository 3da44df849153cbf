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

UserSettings::UserSettings(UserDefaults& defaults) : defaults_(defaults) {}

UserSettings::~UserSettings() = default;

UserSettings& UserSettings::shared() {
    // Never destroyed: views and managers may still hold subscriptions while the process ends.
    static auto* const settings = new UserSettings(Platform::current().userDefaults);
    return *settings;
}

}  // namespace kestro
