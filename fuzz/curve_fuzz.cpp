#include "core/model/fan_curve.h"
#include "fuzz/round_trip.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

// Stored bytes either do not decode, or yield a fan curve with a speed for every temperature.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestro;
    require(!decodeTwice<FanCurveConfig>(std::string(reinterpret_cast<const char*>(data), size)));
    const auto curve = decodeTwice<FanCurveConfig>(PreferenceData(data, data + size));
    if (curve) {
        for (const double temperature : {-1e308, 0.0, curve->lowTemp, 60.0, curve->highTemp, 1e308}) {
            require(!std::isnan(curve->evaluateRPM(temperature)));
        }
    }
    return 0;
}
