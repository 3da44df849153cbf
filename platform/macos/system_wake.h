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
    SystemWake(const SystemWake&) = delete;
    SystemWake& operator=(const SystemWake&) = delete;

private:
    static void changed(void* self, io_service_t service, std::uint32_t message, void* argument);

    const std::function<void()> handler_;
    // The notifier must be released first, and the connection to the power domain last.
    IOConnection rootPowerDomain_;
    NotificationPort port_;
    SystemPowerNotifier notifier_;
};

}  // namespace kestro
