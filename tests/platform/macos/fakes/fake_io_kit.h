#pragma once

#include "tests/platform/macos/fakes/fake_objects.h"

#include <IOKit/IOKitLib.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::fakes {

/// A key of the controller.
struct FakeKey {
    std::uint32_t type = 0;
    std::vector<std::uint8_t> bytes;  ///< at most 32
};

/// A service of the HID event system.
struct FakeSensor {
    std::optional<FakeValue> product;
    std::optional<double> temperature;
    std::int32_t usagePage = 0xFF00;
    std::int32_t usage = 5;
    bool hasVanished = false;  ///< still listed, but has no property and no event any more
};

struct FakeAssertion {
    std::string type;
    IOPMAssertionLevel level = 0;
    std::string name;
};

/// The drivers and services behind IOKit, and what the program holds of them.
class FakeIOKit {
public:
    // The controller, which answers records of 80 bytes as its driver does: a missing key is no error of the call,
    // but a result in the record.
    int controllers = 1;                    ///< matching services
    std::map<std::uint32_t, FakeKey> keys;  ///< by code
    std::size_t recordSize = 80;            ///< that the driver returns
    std::int64_t malformedRecords = 0;
    std::int64_t commands = 0;
    void setKey(std::string_view key, std::string_view type, std::vector<std::uint8_t> bytes);

    std::vector<FakeSensor> sensors;

    /// nullopt: a source whose description is no dictionary.
    std::optional<std::vector<std::optional<FakeDictionary>>> powerSources;
    bool listsSources = true;

    /// Of the run loop's sources, those that announce changes. As in IOKit, nothing releases the port behind one.
    std::vector<std::size_t> powerSourceEvents;
    void announcePowerSources();

    bool refusesAssertions = false;
    std::map<IOPMAssertionID, FakeAssertion> assertions;
    IOPMAssertionID lastAssertion = 0;

    // System power.
    void sendPowerMessage(std::uint32_t message, std::intptr_t argument = 0);
    std::vector<std::intptr_t> allowedChanges;

    struct PowerClient {
        IOServiceInterestCallback callback = nullptr;
        void* context = nullptr;
        bool isDelivered = false;  ///< whether its source is in the run loop
    };
    std::optional<PowerClient> powerClient;
    bool holdsNotificationPort = false;

    /// Objects of the I/O registry and connections, by name, with what they are.
    std::map<io_object_t, std::string> held;
    io_object_t hold(const std::string& what);
    void letGo(io_object_t object, std::string_view what);

    std::vector<std::string> misuse;
    void appendHeld(std::vector<std::string>& all) const;

private:
    io_object_t last_ = 0x5000;
};

}  // namespace kestro::fakes
