#include "core/cooling/driving_temperature.h"

namespace kestro {

namespace {

double readingOf(SensorSource source, const ThermalTelemetry& thermals) {
    switch (source) {
        case SensorSource::averageSoC:
            return thermals.averageSoCTemp;
        case SensorSource::peakDie:
            return thermals.peakDieTemp;
        case SensorSource::batteryPack:
            return thermals.batteryTemp;
    }
    return 0;
}

}  // namespace

double drivingTemperature(SensorSource source, const ThermalTelemetry& thermals) {
    const double reading = readingOf(source, thermals);
    return reading > 0 ? reading : fallbackTemperature(source);
}

bool isDrivingTemperatureMeasured(SensorSource source, const MeasuredTemperatures& measured) {
    switch (source) {
        case SensorSource::averageSoC:
            return measured.averageSoC;
        case SensorSource::peakDie:
            return measured.peakDie;
        case SensorSource::batteryPack:
            return measured.battery;
    }
    return false;
}

}  // namespace kestro
