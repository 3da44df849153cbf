#include "fuzz/requirement.h"
#include "platform/linux/machine/firmware_identity.h"
#include "platform/linux/sensors/hwmon_chip.h"
#include "platform/linux/sensors/sensor_names.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestro {
namespace {

/// displayText() reads every name first and limits it to half of this.
constexpr std::size_t longestName = 512;

void readName(std::string_view name) {
    chipKind(name);
    isFloatingInput(name);
    zoneName(name);
    isFirmwareFiller(name);
    require(!isDieName(nameOutsideDie(name)));
    const std::string field(name);
    const FirmwareIdentity firmware{field, field, field, field, field, field, field, field};
    const auto product = productName(firmware);
    require(!product || !product->empty());
    virtualMachineName(firmware);
}

}  // namespace
}  // namespace kestro

// Names that firmware tables, drivers and devices state.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    kestro::readName(text.substr(0, kestro::longestName));
    return 0;
}
