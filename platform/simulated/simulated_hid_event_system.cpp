#include "platform/simulated/simulated_hid_event_system.h"

#include <fmt/format.h>

namespace kestro {

namespace {

constexpr HIDClient theClient = 7;
constexpr HIDService keyboard = 900;
constexpr std::uint32_t sensorChannel = 300;
constexpr double dieTemperatures[] = {50.1, 51.6, 49.4, 53.2, 57.8, 48.9, 50.7, 49.9, 47.6, 48.3};

}  // namespace

SimulatedHIDEventSystem::SimulatedHIDEventSystem(const SimulatedPattern& pattern) : pattern_(pattern) {
    for (std::size_t die = 0; die < std::size(dieTemperatures); ++die) {
        sensors.push_back({fmt::format("PMU tdie{}", die + 1), dieTemperatures[die], 1.4});
    }
    sensors.insert(sensors.end(), {
                                      {"SOC MTR Temp Sensor0", 50.4, 1.2},
                                      {"SOC MTR Temp Sensor1", 49.2, 1.2},
                                      {"PMU tdev1", 41.8, 0.6},
                                      {"PMU tdev2", 40.6, 0.6},
                                      {"PMU tdev3", 43.1, 0.6},
                                      {"PMU tcal", 51.9, 0},
                                      {"NAND CH0 temp", 38.5, 0.5},
                                      {"gas gauge battery", 31.4, 0.2},
                                      {"gas gauge battery", 31.6, 0.2},
                                      {"gas gauge battery", 31.8, 0.2},
                                  });
}

std::optional<HIDClient> SimulatedHIDEventSystem::createClient() {
    if (clientFailure.strikes()) {
        return std::nullopt;
    }
    ++createdClients_;
    return theClient;
}

void SimulatedHIDEventSystem::setMatching(HIDClient client, std::int32_t primaryUsagePage,
                                          std::int32_t primaryUsage) {
    matchesTemperatureSensors_ = client == theClient && primaryUsagePage == 0xFF00 && primaryUsage == 5;
}

std::optional<std::span<const HIDService>> SimulatedHIDEventSystem::copyServices(HIDClient client) {
    if (servicesFailure.strikes() || client != theClient) {
        return std::nullopt;
    }
    services_.clear();
    for (HIDService service = 0; service < sensors.size(); ++service) {
        services_.push_back(service);
    }
    if (!matchesTemperatureSensors_) {
        services_.push_back(keyboard);
    }
    return services_;
}

std::optional<std::string_view> SimulatedHIDEventSystem::copyProduct(HIDService service) {
    if (productFailure.strikes()) {
        return std::nullopt;
    }
    if (service < sensors.size()) {
        return sensors[service].product;
    }
    return "Keyboard";
}

std::optional<double> SimulatedHIDEventSystem::copyTemperatureEvent(HIDService service) {
    if (temperatureFailure.strikes() || service >= sensors.size() || !sensors[service].temperature) {
        return std::nullopt;
    }
    const SimulatedSensor& sensor = sensors[service];
    return *sensor.temperature + sensor.wobble * pattern_.wave(sensorChannel + service);
}

}  // namespace kestro
