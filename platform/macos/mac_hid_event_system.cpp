#include "platform/macos/mac_hid_event_system.h"

#include "platform/macos/cf_values.h"

#include <algorithm>
#include <cstddef>

namespace kestro {

namespace {

// A service's handle is its client's number in the upper half and its own in the lower.
constexpr std::uint32_t indexBits = 16;
constexpr std::uint32_t servicesPerClient = 1U << indexBits;

}  // namespace

std::optional<HIDClient> MacHIDEventSystem::createClient() {
    CFOwned<IOHIDEventSystemClientRef> system(createHIDEventSystemClient(kCFAllocatorDefault));
    if (!system || clients_.size() >= servicesPerClient) {
        return std::nullopt;
    }
    clients_.push_back({std::move(system), {}});
    return static_cast<HIDClient>(clients_.size() - 1);
}

void MacHIDEventSystem::setMatching(HIDClient client, std::int32_t primaryUsagePage, std::int32_t primaryUsage) {
    Client* const known = clientOf(client);
    const auto pageKey = makeString("PrimaryUsagePage");
    const auto usageKey = makeString("PrimaryUsage");
    const auto page = makeObject(std::int64_t{primaryUsagePage});
    const auto usage = makeObject(std::int64_t{primaryUsage});
    if (known == nullptr || !pageKey || !usageKey || !page || !usage) {
        return;
    }
    if (const auto matching = makeDictionary({pageKey.get(), usageKey.get()}, {page.get(), usage.get()})) {
        setHIDMatching(known->system.get(), matching.get());
    }
}

std::optional<std::span<const HIDService>> MacHIDEventSystem::copyServices(HIDClient client) {
    Client* const known = clientOf(client);
    if (known == nullptr) {
        return std::nullopt;
    }
    known->services.reset(IOHIDEventSystemClientCopyServices(known->system.get()));
    if (!known->services) {
        return std::nullopt;
    }
    const auto count =
        std::min<std::size_t>(static_cast<std::size_t>(CFArrayGetCount(known->services.get())), servicesPerClient);
    listed_.resize(count);
    for (std::size_t index = 0; index < count; ++index) {
        listed_[index] = client << indexBits | static_cast<HIDService>(index);
    }
    return listed_;
}

std::optional<std::string_view> MacHIDEventSystem::copyProduct(HIDService service) {
    const auto known = serviceOf(service);
    const auto key = makeString("Product");
    if (known == nullptr || !key) {
        return std::nullopt;
    }
    const CFOwned<CFTypeRef> product(IOHIDServiceClientCopyProperty(known, key.get()));
    product_ = textOf(product.get());
    return product_;
}

std::optional<double> MacHIDEventSystem::copyTemperatureEvent(HIDService service) {
    const auto known = serviceOf(service);
    if (known == nullptr) {
        return std::nullopt;
    }
    const CFOwned<CFTypeRef> event(copyHIDEvent(known, temperatureEventType, 0, 0));
    return event ? std::optional(floatValueOfHIDEvent(event.get(), temperatureLevelField)) : std::nullopt;
}

MacHIDEventSystem::Client* MacHIDEventSystem::clientOf(HIDClient client) {
    return client < clients_.size() ? &clients_[client] : nullptr;
}

IOHIDServiceClientRef MacHIDEventSystem::serviceOf(HIDService service) {
    const Client* const client = clientOf(service >> indexBits);
    const auto index = static_cast<CFIndex>(service & (servicesPerClient - 1));
    if (client == nullptr || !client->services || index >= CFArrayGetCount(client->services.get())) {
        return nullptr;
    }
    return static_cast<IOHIDServiceClientRef>(
        const_cast<void*>(CFArrayGetValueAtIndex(client->services.get(), index)));
}

}  // namespace kestro
