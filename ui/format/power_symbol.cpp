#include "ui/format/power_symbol.h"

#include "core/telemetry/power_telemetry.h"

namespace kestro {

QString powerSymbol(const PowerTelemetry& power) {
    if (power.isCharging) {
        return QStringLiteral("bolt.fill");
    }
    return power.isPluggedIn ? QStringLiteral("powerplug.fill") : QStringLiteral("battery.100");
}

}  // namespace kestro
