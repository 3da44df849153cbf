#include "platform/macos/mac_process_info_service.h"

#include "core/base/text.h"
#include "platform/macos/kernel_values.h"

// The levels in the next header depend on it.
#include <TargetConditionals.h>
#include <libkern/OSThermalNotification.h>
#include <notify.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace kestro {

namespace {

static_assert(kOSThermalPressureLevelNominal == 0 && kOSThermalPressureLevelModerate == 1 &&
              kOSThermalPressureLevelHeavy == 2 && kOSThermalPressureLevelTrapping == 3);

constexpr std::int64_t critical = 3;

/// Takes the next number of a version such as 14.5.1; 0 when there is none.
std::int64_t takePart(std::string_view& version) {
    std::int64_t part = 0;
    takeNumber(version, part);
    version.remove_prefix(version.starts_with('.') ? 1 : 0);
    return std::max<std::int64_t>(part, 0);
}

}  // namespace

MacProcessInfoService::MacProcessInfoService() {
    int token = 0;
    if (notify_register_check(kOSThermalNotificationPressureLevelName, &token) == NOTIFY_STATUS_OK) {
        thermalPressure_ = token;
    }
}

MacProcessInfoService::~MacProcessInfoService() {
    if (thermalPressure_) {
        notify_cancel(*thermalPressure_);
    }
}

std::uint64_t MacProcessInfoService::physicalMemory() {
    return kernelValue<std::uint64_t>("hw.memsize").value_or(0);
}

std::int64_t MacProcessInfoService::thermalState() {
    std::uint64_t level = 0;
    if (!thermalPressure_ || notify_get_state(*thermalPressure_, &level) != NOTIFY_STATUS_OK) {
        return 0;
    }
    // Above "trapping" the machine is about to sleep.
    return static_cast<std::int64_t>(std::min<std::uint64_t>(level, critical));
}

OperatingSystemVersion MacProcessInfoService::operatingSystemVersion() {
    const std::string text = kernelText("kern.osproductversion").value_or(std::string());
    std::string_view rest = text;
    OperatingSystemVersion version{.productName = "macOS"};
    version.major = takePart(rest);
    version.minor = takePart(rest);
    version.patch = takePart(rest);
    return version;
}

}  // namespace kestro
