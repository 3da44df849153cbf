#include "core/telemetry/fan_telemetry.h"

namespace kestro {

double FanTelemetry::percentage() const {
    if (!(minRPM < maxRPM)) {
        return 0;
    }
    const double fraction = (currentRPM - minRPM) / (maxRPM - minRPM);
    // Written so that NaN yields 0.
    return fraction > 0 ? (fraction < 1 ? fraction : 1) : 0;
}

}  // namespace kestro
