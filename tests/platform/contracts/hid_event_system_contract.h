#pragma once

#include "core/platform/hid_event_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// What every HIDEventSystem promises. A Subject has `port()`, on a machine with temperature sensors.
template <typename Subject>
class HIDEventSystemContract : public testing::Test {
protected:
    HIDClient temperatureClient() {
        const auto client = subject.port().createClient().value();
        subject.port().setMatching(client, 0xFF00, 5);
        return client;
    }

    Subject subject;
};
TYPED_TEST_SUITE_P(HIDEventSystemContract);

TYPED_TEST_P(HIDEventSystemContract, ListsSensorsInAStableOrder) {
    HIDEventSystem& system = this->subject.port();
    const auto client = this->temperatureClient();
    const auto products = [&] {
        std::vector<std::optional<std::string>> names;
        const auto services = system.copyServices(client).value();
        for (const auto service : services) {
            names.emplace_back(system.copyProduct(service));
        }
        return names;
    };

    const auto first = products();

    EXPECT_FALSE(first.empty());
    EXPECT_EQ(products(), first);
}

TYPED_TEST_P(HIDEventSystemContract, MeasuresTemperatures) {
    HIDEventSystem& system = this->subject.port();
    const auto services = system.copyServices(this->temperatureClient()).value();

    EXPECT_TRUE(std::ranges::any_of(services, [&](HIDService service) {
        const auto temperature = system.copyTemperatureEvent(service);
        return temperature && std::isfinite(*temperature) && *temperature > 10 && *temperature < 125;
    }));
}

TYPED_TEST_P(HIDEventSystemContract, KeepsClientsApart) {
    HIDEventSystem& system = this->subject.port();
    const auto first = this->temperatureClient();
    const auto count = system.copyServices(first).value().size();

    system.createClient();

    EXPECT_EQ(system.copyServices(first).value().size(), count);
}

TYPED_TEST_P(HIDEventSystemContract, IgnoresUnknownClientsAndServices) {
    HIDEventSystem& system = this->subject.port();
    constexpr std::uint32_t unknown = 0xFFFFFFF0;

    system.setMatching(unknown, 0xFF00, 5);

    EXPECT_FALSE(system.copyServices(unknown));
    EXPECT_FALSE(system.copyTemperatureEvent(unknown));
}

REGISTER_TYPED_TEST_SUITE_P(HIDEventSystemContract, ListsSensorsInAStableOrder, MeasuresTemperatures,
                            KeepsClientsApart, IgnoresUnknownClientsAndServices);

}  // namespace kestro
