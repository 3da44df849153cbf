#include "ui/dashboard/temperature_rows.h"

#include "ui/controls/words.h"

#include <algorithm>

namespace kestro {

namespace {

constexpr double dieScale = 105;
constexpr double batteryScale = 50;
constexpr double hotAverage = 85;
constexpr double hotPeak = 90;
constexpr double warmPeak = 75;
constexpr double warmBattery = 42;

QString celsiusText(double celsius) {
    return QString::number(celsius, 'f', 1) + QStringLiteral("°C");
}

double share(double celsius, double scale) {
    return std::min(celsius / scale, 1.0);
}

Ink batteryTemperatureInk(double celsius) {
    return celsius > warmBattery ? KestroTheme::accentWarning : KestroTheme::accentNominal;
}

RuledIndexContent thermalPressureRow(const std::string& state, bool hasSensor) {
    const bool isNominal = state == "Nominal";
    const Ink ink = isNominal ? KestroTheme::accentNominal : KestroTheme::accentWarning;
    const double fraction = isNominal ? 0.25 : (state == "Fair" ? 0.5 : 0.9);
    return {QStringLiteral("Thermal Pressure"),
            QStringLiteral("Pressure"),
            Words(state),
            QStringLiteral("Thermal State"),
            fraction,
            ink,
            ink,
            hasSensor || !isNominal};
}

}  // namespace

std::array<RuledIndexContent, 4> temperatureRows(const ThermalTelemetry& thermals,
                                                 const MeasuredTemperatures& measured, bool compact) {
    const auto row = [compact](const char* label, const char* compactLabel, const char* detail, double celsius,
                               double scale, const Ink& ink, bool isMeasured) {
        return RuledIndexContent{Words(label),
                                 Words(compactLabel),
                                 celsiusText(celsius),
                                 compact ? QString() : QString(Words(detail)),
                                 share(celsius, scale),
                                 ink,
                                 ink,
                                 isMeasured};
    };
    return {row("SoC Junction Temp", "SoC Die", "Die Average", thermals.averageSoCTemp, dieScale,
                averageTemperatureInk(thermals.averageSoCTemp), measured.averageSoC),
            row("Peak Die Temp", "Peak Die", "Hottest Core", thermals.peakDieTemp, dieScale,
                peakTemperatureInk(thermals.peakDieTemp), measured.peakDie),
            row("Battery Pack Temp", "Battery", "Cell Pack", thermals.batteryTemp, batteryScale,
                batteryTemperatureInk(thermals.batteryTemp), measured.battery),
            thermalPressureRow(thermals.thermalState, measured.peakDie)};
}

Ink averageTemperatureInk(double celsius) {
    return celsius > hotAverage ? KestroTheme::accentCritical : KestroTheme::accentCool;
}

Ink peakTemperatureInk(double celsius) {
    if (celsius > hotPeak) {
        return KestroTheme::accentCritical;
    }
    return celsius > warmPeak ? KestroTheme::accentWarning : KestroTheme::accentCool;
}

Ink statusInk(std::string_view summary) {
    if (summary == "Critical") {
        return KestroTheme::accentCritical;
    }
    if (summary == "Elevated") {
        return KestroTheme::accentWarning;
    }
    return summary == "Nominal" ? KestroTheme::accentNominal : KestroTheme::accentCool;
}

}  // namespace kestro
