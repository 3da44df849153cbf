#pragma once

#include "core/model/fan_curve.h"
#include "core/telemetry/thermal_telemetry.h"

namespace kestro {

/// The reading that drives a curve, in degrees Celsius; the source's fallback when it is not above 0. Pure; any
/// thread.
double drivingTemperature(SensorSource source, const ThermalTelemetry& thermals);

/// Whether a sensor gave that reading.
bool isDrivingTemperatureMeasured(SensorSource source, const MeasuredTemperatures& measured);

}  // namespace kestro
