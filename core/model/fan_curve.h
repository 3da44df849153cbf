#pragma once

#include "core/base/enumeration.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// The user's fan profile. Only `custom` computes anything; the others are just stored and shown.
enum class FanProfile { silent, normal, cool, turbo, custom };

template <>
struct EnumerationTable<FanProfile> {
    struct Row {
        FanProfile value;
        std::string_view rawValue;
        std::string_view description;
        std::string_view iconName;
    };
    static constexpr std::array rows{
        Row{FanProfile::silent, "Silent", "Minimal acoustics, baseline fan speed floor", "leaf.fill"},
        Row{FanProfile::normal, "Normal (Auto)", "Apple SMC dynamic thermal management", "bolt.fill"},
        Row{FanProfile::cool, "Cool", "Pre-emptive cooling curve, elevated baseline", "snowflake"},
        Row{FanProfile::turbo, "Turbo", "Maximum thermal dissipation, 100% turbine speed", "flame.fill"},
        Row{FanProfile::custom, "Custom Curves", "Precision multi-point sensor-driven temperature curves",
            "waveform.path.ecg"},
    };
};

/// The temperature that drives a curve.
enum class SensorSource { averageSoC, peakDie, batteryPack };

template <>
struct EnumerationTable<SensorSource> {
    struct Row {
        SensorSource value;
        std::string_view rawValue;
        std::string_view description;
        std::string_view iconName;
        double fallbackTemperature;
    };
    static constexpr std::array rows{
        Row{SensorSource::averageSoC, "Average SoC Temp", "Smooth overall Apple Silicon substrate temperature",
            "thermometer.medium", 48.0},
        Row{SensorSource::peakDie, "Peak Silicon Die", "Instantaneous hottest thermal node across CPU/GPU cores",
            "flame.fill", 52.0},
        Row{SensorSource::batteryPack, "Battery Pack", "Chemical pack temperature during intensive charging",
            "battery.100", 32.0},
    };
};

/// How the speed rises between the two temperatures of a curve.
enum class CurveShape { sCurve, linear, stepped };

template <>
struct EnumerationTable<CurveShape> {
    struct Row {
        CurveShape value;
        std::string_view rawValue;
        std::string_view description;
        std::string_view iconName;
    };
    static constexpr std::array rows{
        Row{CurveShape::sCurve, "Acoustic S-Curve", "Whisper-quiet idle floor, gentle mid-roll, firm thermal ramp",
            "waveform.path"},
        Row{CurveShape::linear, "Linear Proportional", "Direct mathematical 1:1 progression between thresholds",
            "chart.xyaxis.line"},
        Row{CurveShape::stepped, "Stepped Acoustic Stages",
            "Discrete non-oscillating RPM tiers (Idle, Medium, High, Max)", "stairs"},
    };
};

/// Ready-made curves. Some labels deliberately differ from the case names.
enum class CurvePreset { quietStudio, balancedEveryday, aggressiveTurbo, linearPro };

template <>
struct EnumerationTable<CurvePreset> {
    struct Row {
        CurvePreset value;
        std::string_view rawValue;
        std::string_view iconName;
        SensorSource sensorSource;
        CurveShape curveShape;
        double lowTemp;
        double highTemp;
        std::optional<double> acousticCeiling;
    };
    static constexpr std::array rows{
        Row{CurvePreset::quietStudio, "Quiet Studio", "mic.fill", SensorSource::averageSoC, CurveShape::sCurve,
            55.0, 92.0, 5200.0},
        Row{CurvePreset::balancedEveryday, "Balanced Studio", "scale.3d", SensorSource::averageSoC,
            CurveShape::sCurve, 48.0, 84.0, std::nullopt},
        Row{CurvePreset::aggressiveTurbo, "Aggressive Cooling", "bolt.fill", SensorSource::peakDie,
            CurveShape::linear, 40.0, 76.0, std::nullopt},
        Row{CurvePreset::linearPro, "Linear Standard", "chart.xyaxis.line", SensorSource::averageSoC,
            CurveShape::linear, 45.0, 85.0, std::nullopt},
    };
};

/// Degrees Celsius to assume for a source whose reading is not above 0.
constexpr double fallbackTemperature(SensorSource source) {
    return tableRow(source).fallbackTemperature;
}

/// One fan's curve from temperature (degrees Celsius) to speed (revolutions per minute).
struct FanCurveConfig {
    SensorSource sensorSource = SensorSource::averageSoC;
    CurveShape curveShape = CurveShape::sCurve;
    double lowTemp = 48.0;   ///< at or below it the fan runs at `minRPM`
    double highTemp = 84.0;  ///< at or above it the fan runs at the ceiling
    double minRPM = 1250.0;
    double maxRPM = 7300.0;
    bool isFixedRPM = false;  ///< ignore the curve and use `fixedRPM`
    double fixedRPM = 2400.0;
    bool acousticCeilingEnabled = false;  ///< the upper end of the curve is capped
    double acousticCeilingRPM = 6000.0;

    /// The curves in use until others are stored.
    static constexpr FanCurveConfig leftDefault() { return {}; }
    static constexpr FanCurveConfig rightDefault() {
        FanCurveConfig config;
        config.minRPM = 1350.0;
        config.maxRPM = 7800.0;
        return config;
    }

    /// The speed for a temperature. A NaN result becomes `minRPM`, but never at or above `highTemp`.
    double evaluateRPM(double temperature) const;

    friend bool operator==(const FanCurveConfig&, const FanCurveConfig&) = default;
};

/// The preset's complete curve for a fan with the given speed range.
FanCurveConfig applyTo(CurvePreset preset, double minRPM, double maxRPM);

/// The stored form: a JSON object with exactly the ten fields, enumerations by raw value. nullopt: a number is not
/// finite, which JSON cannot represent.
std::optional<std::string> encodeFanCurve(const FanCurveConfig& config);

/// Parses the stored form. nullopt: the text is not JSON, or a field is missing or of another type.
std::optional<FanCurveConfig> decodeFanCurve(std::string_view json);

}  // namespace kestro
