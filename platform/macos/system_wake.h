#pragma once

#include "platform/macos/owned.h"

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>

#include <cstdint>
#include <functional>

namespace kestro {

/// Calls back on the main thread whenever the machine has woken from sleep, while the main run loop runs. Consents
/// to every sleep at once. Where the system refuses to register it, it never calls. Main thread.
class SystemWake {
public:
    explicit SystemWake(std::function<void()> handler);
    ~SystemWake();
    SystemWake(const SystemWake&) = delete;
    SystemWake& operator=(const SystemWake&) = delete;

private:
    static void changed(void* self, io_service_t service, std::uint32_t message, void* argument);

    const std::function<void()> handler_;
    IONotificationPortRef port_ = nullptr;  ///< not a Core Foundation object; null: not registered
    io_object_t notifier_ = IO_OBJECT_NULL;
    IOConnection rootPowerDomain_;
};

}  // namespace kestro
