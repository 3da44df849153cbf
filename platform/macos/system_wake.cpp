#include "platform/macos/system_wake.h"

#include <IOKit/IOMessage.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include <cstdint>
#include <utility>

namespace kestro {

SystemWake::SystemWake(std::function<void()> handler) : handler_(std::move(handler)) {
    rootPowerDomain_.reset(IORegisterForSystemPower(this, port_.out(), &changed, notifier_.out()));
    if (!rootPowerDomain_) {
        return;
    }
    const CFRunLoopSourceRef source = IONotificationPortGetRunLoopSource(port_.get());
    if (source == nullptr) {
        // While registered, the machine would wait for an answer before every sleep.
        notifier_.reset();
        port_.reset();
        rootPowerDomain_.reset();
        return;
    }
    CFRunLoopAddSource(CFRunLoopGetMain(), source, kCFRunLoopCommonModes);
}

void SystemWake::changed(void* self, io_service_t, std::uint32_t message, void* argument) {
    const auto& wake = *static_cast<const SystemWake*>(self);
    switch (message) {
        case kIOMessageCanSystemSleep:
        case kIOMessageSystemWillSleep:
            // The system waits half a minute for an answer.
            IOAllowPowerChange(wake.rootPowerDomain_.get(), reinterpret_cast<std::intptr_t>(argument));
            break;
        case kIOMessageSystemHasPoweredOn:
            wake.handler_();
            break;
        default:
            break;
    }
}

}  // namespace kestro
