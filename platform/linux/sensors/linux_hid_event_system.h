#pragma once

#include "core/platform/clock.h"
#include "core/platform/hid_event_system.h"
#include "platform/linux/sensors/sleeping_devices.h"
#include "platform/linux/sensors/temperature_sensors.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// Exposes the temperature sensors as services of the event system. Main thread. Only the usage of temperature
/// sensors matches anything; a client without any matching set sees them too.
class LinuxHIDEventSystem final : public HIDEventSystem {
public:
    /// `root` is the mount point of the machine's file system. `devices` is shared with the fans' service.
    explicit LinuxHIDEventSystem(const Clock& clock, std::string root = "/",
                                 std::shared_ptr<SleepingDevices> devices = std::make_shared<SleepingDevices>());

    /// Always succeeds, even without sensors: they may appear later.
    std::optional<HIDClient> createClient() override;

    void setMatching(HIDClient client, std::int32_t primaryUsagePage, std::int32_t primaryUsage) override;

    /// nullopt: an unknown client.
    std::optional<std::span<const HIDService>> copyServices(HIDClient client) override;

    std::optional<std::string_view> copyProduct(HIDService service) override;
    std::optional<double> copyTemperatureEvent(HIDService service) override;

private:
    const Clock& clock_;
    TemperatureSensors sensors_;
    std::vector<bool> matches_;  ///< per client: whether its matching selects the sensors
    std::vector<HIDService> services_;
};

}  // namespace kestro
