#pragma once

#include "core/telemetry/thermal_telemetry.h"
#include "ui/widgets/ruled_index_row.h"

#include <array>

namespace kestro {

/// The four temperature rows of the cooling section, always in degrees Celsius. `compact` omits the details except
/// that of the thermal pressure, which counts as measured if anything was or if it is not nominal.
std::array<RuledIndexContent, 4> temperatureRows(const ThermalTelemetry& thermals,
                                                 const MeasuredTemperatures& measured, bool compact);

/// The colours of an average and of a peak die temperature.
Ink averageTemperatureInk(double celsius);
Ink peakTemperatureInk(double celsius);

/// The colour of a status summary: "Cool", "Nominal", "Elevated" or "Critical".
Ink statusInk(std::string_view summary);

}  // namespace kestro
