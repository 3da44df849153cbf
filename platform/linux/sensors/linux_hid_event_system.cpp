#include "platform/linux/sensors/linux_hid_event_system.h"

#include <numeric>
#include <utility>

namespace kestro {
namespace {

constexpr std::int32_t vendorUsagePage = 0xFF00;
constexpr std::int32_t temperatureUsage = 5;

}  // namespace

LinuxHIDEventSystem::LinuxHIDEventSystem(const Clock& clock, std::string root,
                                         std::shared_ptr<SleepingDevices> devices)
    : clock_(clock), sensors_(std::move(root), std::move(devices)) {}

std::optional<HIDClient> LinuxHIDEventSystem::createClient() {
    matches_.push_back(true);
    return static_cast<HIDClient>(matches_.size());
}

void LinuxHIDEventSystem::setMatching(HIDClient client, std::int32_t primaryUsagePage, std::int32_t primaryUsage) {
    if (client >= 1 && client <= matches_.size()) {
        matches_[client - 1] = primaryUsagePage == vendorUsagePage && primaryUsage == temperatureUsage;
    }
}

std::optional<std::span<const HIDService>> LinuxHIDEventSystem::copyServices(HIDClient client) {
    if (client < 1 || client > matches_.size()) {
        return std::nullopt;
    }
    sensors_.refresh(clock_.monotonicNow());
    services_.resize(matches_[client - 1] ? sensors_.count() : 0);
    std::iota(services_.begin(), services_.end(), HIDService{1});
    return services_;
}

std::optional<std::string_view> LinuxHIDEventSystem::copyProduct(HIDService service) {
    const bool isKnown = service >= 1 && service <= sensors_.count();
    return isKnown ? std::optional<std::string_view>(sensors_.name(service - 1)) : std::nullopt;
}

std::optional<double> LinuxHIDEventSystem::copyTemperatureEvent(HIDService service) {
    const bool isKnown = service >= 1 && service <= sensors_.count();
    return isKnown ? sensors_.temperature(service - 1, clock_.monotonicNow()) : std::nullopt;
}

}  // namespace kestro
