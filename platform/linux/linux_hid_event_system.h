#pragma once

#include "core/platform/clock.h"
#include "core/platform/hid_event_system.h"
#include "platform/linux/temperature_sensors.h"

#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The temperature sensors as services of the event system. Main thread. Only the usage of temperature sensors
/// matches anything; a client that has set no matching sees them too.
class LinuxHIDEventSystem final : public HIDEventSystem {
public:
    /// `root` is where the machine's file system is mounted.
    explicit LinuxHIDEventSystem(const Clock& clock, std::string root = "/");

    /// Always there, also on a machine without sensors: they can come later.
    std::optional<HIDClient> createClient() override;

    void setMatching(HIDClient client, std::int32_t primaryUsagePage, std::int32_t primaryUsage) override;

    /// nullopt: an unknown client.
    std::optional<std::vector<HIDService>> copyServices(HIDClient client) override;

    std::optional<std::string> copyProduct(HIDService service) override;
    std::optional<double> copyTemperatureEvent(HIDService service) override;

private:
    const Clock& clock_;
    TemperatureSensors sensors_;
    std::vector<bool> matches_;  ///< of each client, whether its matching selects the sensors
};

}  // namespace kestro
