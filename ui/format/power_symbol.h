#pragma once

#include <QString>

namespace kestro {

struct PowerTelemetry;

/// The symbol of the power source: a bolt while charging, a plug, or the battery.
QString powerSymbol(const PowerTelemetry& power);

}  // namespace kestro
