#pragma once

#include "core/platform/hid_event_system.h"
#include "platform/simulated/simulated_failure.h"
#include "platform/simulated/simulated_pattern.h"

#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// One temperature sensor, in degrees Celsius.
struct SimulatedSensor {
    std::optional<std::string> product;  ///< nullopt: the property is missing
    std::optional<double> temperature;   ///< nullopt: no event
    double wobble = 0;                   ///< amplitude around the temperature
};

/// Twenty named temperature sensors, and a keyboard that only a client without matching sees.
class SimulatedHIDEventSystem final : public HIDEventSystem {
public:
    explicit SimulatedHIDEventSystem(const SimulatedPattern& pattern);

    std::optional<HIDClient> createClient() override;
    void setMatching(HIDClient client, std::int32_t primaryUsagePage, std::int32_t primaryUsage) override;
    std::optional<std::span<const HIDService>> copyServices(HIDClient client) override;
    std::optional<std::string_view> copyProduct(HIDService service) override;
    std::optional<double> copyTemperatureEvent(HIDService service) override;

    SimulatedFailure clientFailure;
    SimulatedFailure servicesFailure;
    SimulatedFailure productFailure;
    SimulatedFailure temperatureFailure;
    std::vector<SimulatedSensor> sensors;

    std::int64_t createdClients() const { return createdClients_; }

private:
    const SimulatedPattern& pattern_;
    std::int64_t createdClients_ = 0;
    bool matchesTemperatureSensors_ = false;
    std::vector<HIDService> services_;
};

}  // namespace kestro
