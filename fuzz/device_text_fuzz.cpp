#include "fuzz/requirement.h"
#include "platform/linux/battery/linux_power_events.h"
#include "platform/linux/network/interface_traffic.h"
#include "platform/linux/sensors/thermal_zones.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kestro {
namespace {

void readDevices(std::string_view text) {
    parseTripKind(text);
    isPowerSupplyEvent(text);
    require(parseMillidegrees(text).value_or(0) <= 300'000);
    std::vector<InterfaceTraffic> traffic;
    parseInterfaceTraffic(text, traffic);
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readDevices(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
