#include "fuzz/requirement.h"
#include "platform/linux/battery/power_supply.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestro {
namespace {

void readBattery(std::string_view text) {
    parseSupplyKind(text);
    auto supply = parsePowerSupply(text);
    supply.kind = PowerSupply::Kind::battery;
    const auto description = describeBatteries({supply, supply});
    const auto single = describeBatteries({supply});
    require(description.has_value() == single.has_value());
}

}  // namespace
}  // namespace kestro

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kestro::readBattery(std::string_view(reinterpret_cast<const char*>(data), size));
    return 0;
}
