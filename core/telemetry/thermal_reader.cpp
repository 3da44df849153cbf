#include "core/telemetry/thermal_reader.h"

#include "core/base/text.h"
#include "core/platform/hid_event_system.h"
#include "core/platform/platform.h"
#include "core/platform/process_info_service.h"

#include <algorithm>

namespace kestro {

namespace {

// The vendor-defined sensor page, and the temperature usage on it.
constexpr std::int32_t sensorUsagePage = 0xFF00;
constexpr std::int32_t temperatureUsage = 5;

constexpr double coldestReading = 10;
constexpr double hottestReading = 125;
constexpr double fallbackSoCTemp = 50;
constexpr double fallbackBatteryTemp = 32;

struct Mean {
    double sum = 0;
    std::int64_t count = 0;

    void add(double value) {
        sum += value;
        ++count;
    }
    double valueOr(double fallback) const { return count > 0 ? sum / static_cast<double>(count) : fallback; }
};

bool measuresDie(std::string_view product) {
    return containsLowered(product, "tdie") || containsLowered(product, "soc") || containsLowered(product, "cpu");
}

const char* stateText(std::int64_t state) {
    switch (state) {
        case 1:
            return "Fair";
        case 2:
            return "Serious";
        case 3:
            return "Critical";
        default:
            return "Nominal";
    }
}

}  // namespace

ThermalReader::ThermalReader(HIDEventSystem& eventSystem, ProcessInfoService& processInfo)
    : eventSystem_(eventSystem), processInfo_(processInfo), client_(eventSystem.createClient()) {
    if (client_) {
        eventSystem_.setMatching(*client_, sensorUsagePage, temperatureUsage);
    }
}

ThermalReader& ThermalReader::shared() {
    static auto* const reader =
        new ThermalReader(Platform::current().hidEventSystem, Platform::current().processInfo);
    return *reader;
}

ThermalTelemetry ThermalReader::readThermals() {
    const auto services = client_ ? eventSystem_.copyServices(*client_) : std::nullopt;
    if (!services) {
        measured_ = {};
        return ThermalTelemetry::initial();
    }
    double peak = 0;
    Mean die;
    Mean battery;
    for (const HIDService service : *services) {
        const auto product = eventSystem_.copyProduct(service);
        if (!product) {
            continue;
        }
        const auto temperature = eventSystem_.copyTemperatureEvent(service);
        if (!temperature || !(*temperature > coldestReading && *temperature < hottestReading)) {
            continue;
        }
        if (containsLowered(*product, "battery")) {
            battery.add(*temperature);
        } else if (measuresDie(*product)) {
            die.add(*temperature);
        }
        peak = std::max(peak, *temperature);
    }

    measured_ = {.averageSoC = die.count > 0, .peakDie = peak > 0, .battery = battery.count > 0};
    ThermalTelemetry record;
    record.averageSoCTemp = die.valueOr(fallbackSoCTemp);
    record.peakDieTemp = peak > 0 ? peak : record.averageSoCTemp;
    record.batteryTemp = battery.valueOr(fallbackBatteryTemp);
    record.sensorCount = static_cast<std::int64_t>(services->size());
    record.thermalState = stateText(processInfo_.thermalState());
    return record;
}

}  // namespace kestro
