#include "platform/macos/mac_hid_event_system.h"

#include "core/telemetry/thermal_reader.h"
#include "platform/macos/mac_process_info_service.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestro {
namespace {

using fakes::FakeMac;
using fakes::FakeSensor;
using fakes::FakeValue;
using fakes::UnpairedSurrogate;

FakeSensor sensor(std::string product, double temperature) {
    return {.product = FakeValue{std::move(product)}, .temperature = temperature};
}

HIDClient temperatureClient(MacHIDEventSystem& system) {
    const auto client = system.createClient().value();
    system.setMatching(client, 0xFF00, 5);
    return client;
}

/// A copy of the list, which outlives the next one.
std::vector<HIDService> listed(MacHIDEventSystem& system, HIDClient client) {
    const auto services = system.copyServices(client).value();
    return {services.begin(), services.end()};
}

TEST(MacHIDEventSystem, ListsOnlyMatchingServices) {
    FakeMac mac;
    mac.ioKit.sensors = {sensor("Keyboard", 0), sensor("PMU tdie1", 61.5)};
    mac.ioKit.sensors[0].usagePage = 1;
    mac.ioKit.sensors[0].usage = 6;
    MacHIDEventSystem system;
    const auto client = temperatureClient(system);

    const auto services = system.copyServices(client).value();

    ASSERT_EQ(services.size(), 1U);
    EXPECT_EQ(system.copyProduct(services[0]), "PMU tdie1");
    EXPECT_EQ(system.copyTemperatureEvent(services[0]), 61.5);
}

TEST(MacHIDEventSystem, HasNoProductThatIsNotText) {
    FakeMac mac;
    mac.ioKit.sensors = {{.product = FakeValue{std::int64_t{7}}, .temperature = 50},
                         {.product = FakeValue{UnpairedSurrogate{}}, .temperature = 50},
                         {.product = std::nullopt, .temperature = 50}};
    MacHIDEventSystem system;
    const auto services = system.copyServices(temperatureClient(system)).value();

    for (const auto service : services) {
        EXPECT_FALSE(system.copyProduct(service));
        EXPECT_EQ(system.copyTemperatureEvent(service), 50);
    }
}

TEST(MacHIDEventSystem, KeepsVanishedServicesUntilTheNextList) {
    FakeMac mac;
    for (int index = 0; index < 200; ++index) {
        mac.ioKit.sensors.push_back(sensor("PMU tdie" + std::to_string(index), 40 + index % 50));
    }
    MacHIDEventSystem system;
    const auto client = temperatureClient(system);
    const auto services = listed(system, client);

    for (std::size_t index = 0; index < services.size(); index += 3) {
        mac.ioKit.sensors[index].hasVanished = true;
    }

    for (std::size_t index = 0; index < services.size(); ++index) {
        EXPECT_EQ(system.copyTemperatureEvent(services[index]).has_value(), index % 3 != 0);
    }
    mac.ioKit.sensors.resize(10);
    EXPECT_EQ(system.copyServices(client).value().size(), 10U);
    EXPECT_FALSE(system.copyProduct(services.back()));
    EXPECT_TRUE(mac.misuse().empty());
}

TEST(MacHIDEventSystem, KeepsClientsApart) {
    FakeMac mac;
    mac.ioKit.sensors = {sensor("PMU tdie1", 61.5), sensor("Lid", 0)};
    mac.ioKit.sensors[1].usage = 6;
    MacHIDEventSystem system;
    const auto first = temperatureClient(system);
    const auto second = system.createClient().value();

    const auto some = listed(system, first);
    const auto all = listed(system, second);

    EXPECT_EQ(some.size(), 1U);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(system.copyProduct(all[1]), "Lid");
    EXPECT_EQ(system.copyProduct(some[0]), "PMU tdie1");
}

TEST(MacHIDEventSystem, IgnoresUnknownClientsAndServices) {
    FakeMac mac;
    MacHIDEventSystem system;

    system.setMatching(3, 0xFF00, 5);

    EXPECT_FALSE(system.copyServices(3));
    EXPECT_FALSE(system.copyProduct(0));
    EXPECT_FALSE(system.copyTemperatureEvent(0x30001));
}

TEST(MacHIDEventSystem, HoldsNothingWhenCallsFail) {
    useWithFailingCalls(
        [](FakeMac& mac) {
            for (int index = 0; index < 20; ++index) {
                mac.ioKit.sensors.push_back(sensor("gas gauge battery", 31));
            }
        },
        [](FakeMac&) {
            MacHIDEventSystem system;
            MacProcessInfoService info;
            ThermalReader reader(system, info);
            reader.readThermals();
            reader.readThermals();
        });
}

TEST(MacHIDEventSystem, HoldsNoMoreAfterAThousandReadings) {
    FakeMac mac;
    for (int index = 0; index < 200; ++index) {
        mac.ioKit.sensors.push_back(sensor("SOC MTR Temp Sensor" + std::to_string(index), 50));
    }
    MacHIDEventSystem system;
    MacProcessInfoService info;
    ThermalReader reader(system, info);
    reader.readThermals();
    const auto held = mac.objects.alive();

    for (std::size_t round = 0; round < 1000; ++round) {
        mac.ioKit.sensors[round % 200].hasVanished = round % 7 == 0;
        EXPECT_EQ(reader.readThermals().averageSoCTemp, 50);
    }

    EXPECT_EQ(mac.objects.alive(), held);
    EXPECT_TRUE(mac.misuse().empty());
}

}  // namespace
}  // namespace kestro
