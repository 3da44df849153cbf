#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kestro {

/// A client of the event system. Valid as long as the event system exists.
using HIDClient = std::uint32_t;

/// One of a client's services: a sensor. Valid until the client's next `copyServices`.
using HIDService = std::uint32_t;

/// The human-interface event system, which publishes the temperature sensors. Main thread.
class HIDEventSystem {
public:
    virtual ~HIDEventSystem() = default;

    /// nullopt: the event system is not available.
    virtual std::optional<HIDClient> createClient() = 0;

    /// Restricts the client to services of this usage; 0xFF00 and 5 select the temperature sensors.
    virtual void setMatching(HIDClient client, std::int32_t primaryUsagePage, std::int32_t primaryUsage) = 0;

    /// The matching services in a stable order, owned by the port and valid until the next call, for any client.
    /// nullopt: they could not be listed.
    virtual std::optional<std::span<const HIDService>> copyServices(HIDClient client) = 0;

    /// The service's "Product" text, owned by the port and valid until the next call of this or `copyServices`;
    /// nullopt when it has none.
    virtual std::optional<std::string_view> copyProduct(HIDService service) = 0;

    /// The level of the service's temperature event in degrees Celsius; nullopt when there is no event, for
    /// example briefly after resume.
    virtual std::optional<double> copyTemperatureEvent(HIDService service) = 0;
};

}  // namespace kestro
