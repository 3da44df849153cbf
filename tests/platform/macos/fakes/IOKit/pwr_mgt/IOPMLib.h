#pragma once

// Only what platform/macos uses, with the types and values of Apple's IOKitUser. Implemented by the fakes.

#include <IOKit/IOKitLib.h>

using IOPMAssertionID = std::uint32_t;
using IOPMAssertionLevel = std::uint32_t;

enum { kIOPMNullAssertionID = 0 };
enum { kIOPMAssertionLevelOff = 0, kIOPMAssertionLevelOn = 255 };

extern "C" {

IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level, CFStringRef name,
                                     IOPMAssertionID* assertion);
IOReturn IOPMAssertionRelease(IOPMAssertionID assertion);

io_connect_t IORegisterForSystemPower(void* context, IONotificationPortRef* port,
                                      IOServiceInterestCallback callback, io_object_t* notifier);
IOReturn IODeregisterForSystemPower(io_object_t* notifier);
IOReturn IOAllowPowerChange(io_connect_t rootPowerDomain, std::intptr_t notification);

}  // extern "C"
