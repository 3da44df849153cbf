#include "core/base/text.h"
#include "core/model/fan_curve.h"
#include "core/model/keep_awake_types.h"
#include "core/model/settings_enumerations.h"
#include "core/power/power_mode_report.h"
#include "core/settings/preference_codec.h"
#include "core/telemetry/process_reader.h"
#include "fuzz/requirement.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

/// A value that decodes survives a round trip.
template <typename T>
void decode(const PreferenceValue& stored) {
    const auto value = PreferenceCodec<T>::decode(stored);
    if (!value) {
        return;
    }
    const auto again = PreferenceCodec<T>::encode(*value);
    require(again && PreferenceCodec<T>::decode(*again) == value);
}

void readPreference(const PreferenceValue& stored) {
    decode<bool>(stored);
    decode<std::int64_t>(stored);
    decode<double>(stored);
    decode<std::vector<MenubarModuleType>>(stored);
    decode<FanCurveConfig>(stored);
    decode<SettingsTab>(stored);
    decode<MenubarDelimiter>(stored);
    decode<KeepAwakeDuration>(stored);
}

void readCurve(std::string_view text) {
    const auto curve = decodeFanCurve(text);
    if (!curve) {
        return;
    }
    for (const double temperature : {-1e308, 0.0, curve->lowTemp, 60.0, curve->highTemp, 1e308}) {
        require(!std::isnan(curve->evaluateRPM(temperature)));
    }
}

void readTools(std::string_view text) {
    const bool isText = isValidUtf8(text);
    require(isText || powerModeOfReport(text) == SystemPowerMode::balanced);
    constexpr std::int64_t limit = 5;
    const auto processes = processesOfListing(text, limit);
    require(std::ssize(processes) <= limit);
    for (const auto& process : processes) {
        require(!process.name.empty() && std::isfinite(process.cpuPercent) && std::isfinite(process.memoryMB));
        require(!isText || (isValidUtf8(process.name) && isValidUtf8(process.fullCommand)));
    }
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    kestro::readPreference(kestro::PreferenceData(data, data + size));
    kestro::readPreference(std::string(text));
    kestro::readCurve(text);
    kestro::readTools(text);
    return 0;
}
