#pragma once

#include "platform/linux/sensors/linux_hid_event_system.h"
#include "tests/platform/linux/support.h"

#include <map>
#include <span>
#include <string>
#include <vector>

namespace kestro::test {

/// The temperature sensors of a machine, as a reader sees them.
class Sensors {
public:
    explicit Sensors(const std::string& root) : system(clock, root), client(system.createClient().value_or(0)) {
        system.setMatching(client, 0xFF00, 5);
    }

    std::span<const HIDService> services() {
        return system.copyServices(client).value_or(std::span<const HIDService>());
    }

    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const auto service : services()) {
            result.emplace_back(system.copyProduct(service).value_or("?"));
        }
        return result;
    }

    /// The sensors that have a reading.
    std::map<std::string, double> readings() {
        std::map<std::string, double> result;
        for (const auto service : services()) {
            if (const auto temperature = system.copyTemperatureEvent(service)) {
                result.emplace(system.copyProduct(service).value_or("?"), *temperature);
            }
        }
        return result;
    }

    ManualClock clock;
    LinuxHIDEventSystem system;
    HIDClient client;
};

}  // namespace kestro::test
