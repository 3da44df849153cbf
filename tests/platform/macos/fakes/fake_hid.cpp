// The port's declarations, to show that they do not conflict with others of the same functions.
#include "platform/macos/hid_event_system_client.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace kestro::fakes {

namespace {

FakeMac& mac() {
    return FakeMac::current();
}

/// A client's matching is its only child; the sensor of a service is its index, and of an event its value.
const FakeSensor& sensorOf(const FakeObject& object) {
    return mac().ioKit.sensors.at(object.index);
}

bool matches(const FakeSensor& sensor, const FakeObject& client) {
    if (client.children.empty()) {
        return true;
    }
    const auto matching = FakeObjects::valueOf(*client.children.front());
    const auto& keys = std::get<FakeDictionary>(matching.content);
    const auto number = [&keys](const char* key) { return std::get<std::int64_t>(keys.at(key).content); };
    return number("PrimaryUsagePage") == sensor.usagePage && number("PrimaryUsage") == sensor.usage;
}

}  // namespace

}  // namespace kestro::fakes

using namespace kestro;
using namespace kestro::fakes;

extern "C" {

using IOHIDEventRef = struct __IOHIDEvent*;

IOHIDEventSystemClientRef IOHIDEventSystemClientCreate(CFAllocatorRef) {
    if (mac().fails("IOHIDEventSystemClientCreate")) {
        return nullptr;
    }
    return reinterpret_cast<IOHIDEventSystemClientRef>(mac().objects.make(FakeType::hidClient));
}

void IOHIDEventSystemClientSetMatching(IOHIDEventSystemClientRef client, CFDictionaryRef matching) {
    FakeObject& object = mac().objects.use(client, FakeType::hidClient);
    mac().objects.retain(matching);
    for (const auto* previous : object.children) {
        mac().objects.release(previous);
    }
    object.children = {&mac().objects.use(matching, FakeType::dictionary)};
}

CFArrayRef IOHIDEventSystemClientCopyServices(IOHIDEventSystemClientRef client) {
    const FakeObject& object = mac().objects.use(client, FakeType::hidClient);
    if (mac().fails("IOHIDEventSystemClientCopyServices")) {
        return nullptr;
    }
    auto* const list = mac().objects.make(FakeType::array);
    for (std::size_t index = 0; index < mac().ioKit.sensors.size(); ++index) {
        if (matches(mac().ioKit.sensors[index], object)) {
            auto* const service = mac().objects.make(FakeType::hidService);
            service->index = index;
            list->children.push_back(service);
        }
    }
    return reinterpret_cast<CFArrayRef>(list);
}

CFTypeRef IOHIDServiceClientCopyProperty(IOHIDServiceClientRef service, CFStringRef key) {
    const FakeSensor& sensor = sensorOf(mac().objects.use(service, FakeType::hidService));
    const auto* const name = std::get_if<std::string>(&mac().objects.use(key, FakeType::string).value);
    const bool isProduct = name != nullptr && *name == "Product";
    if (mac().fails("IOHIDServiceClientCopyProperty") || sensor.hasVanished || !sensor.product || !isProduct) {
        return nullptr;
    }
    return mac().objects.makeValue(*sensor.product);
}

IOHIDEventRef IOHIDServiceClientCopyEvent(IOHIDServiceClientRef service, std::uint32_t type,
                                          IOHIDEventRef matching, std::uint32_t options) {
    const FakeSensor& sensor = sensorOf(mac().objects.use(service, FakeType::hidService));
    if (mac().fails("IOHIDServiceClientCopyEvent") || sensor.hasVanished || !sensor.temperature || type != 15 ||
        matching != nullptr || options != 0) {
        return nullptr;
    }
    auto* const event = mac().objects.make(FakeType::hidEvent);
    event->value = *sensor.temperature;
    return reinterpret_cast<IOHIDEventRef>(event);
}

double IOHIDEventGetFloatValue(IOHIDEventRef event, std::uint32_t field) {
    const auto& value = mac().objects.use(event, FakeType::hidEvent).value;
    return field == 0xF0000 ? std::get<double>(value) : -1;
}

}  // extern "C"
