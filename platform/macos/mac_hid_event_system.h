#pragma once

#include "core/platform/hid_event_system.h"
#include "platform/macos/hid_event_system_client.h"
#include "platform/macos/owned.h"

#include <optional>
#include <string>
#include <vector>

namespace kestro {

/// The system's HID event system. Main thread. Keeps the services of the last `copyServices` of each client alive,
/// so a sensor that vanishes meanwhile just has no event.
class MacHIDEventSystem final : public HIDEventSystem {
public:
    std::optional<HIDClient> createClient() override;
    void setMatching(HIDClient client, std::int32_t primaryUsagePage, std::int32_t primaryUsage) override;

    /// At most the first 65,536 services.
    std::optional<std::span<const HIDService>> copyServices(HIDClient client) override;

    std::optional<std::string_view> copyProduct(HIDService service) override;
    std::optional<double> copyTemperatureEvent(HIDService service) override;

private:
    struct Client {
        CFOwned<IOHIDEventSystemClientRef> system;
        CFOwned<CFArrayRef> services;
    };

    Client* clientOf(HIDClient client);
    IOHIDServiceClientRef serviceOf(HIDService service);

    std::vector<Client> clients_;
    std::vector<HIDService> listed_;
    std::optional<std::string> product_;
};

}  // namespace kestro
