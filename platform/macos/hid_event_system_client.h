#pragma once

#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>

#include <cstdint>

/// The name of a C function in object files, which on macOS begins with an underscore.
#define KESTRO_QUOTED(text) #text
#define KESTRO_EXPANDED_AND_QUOTED(text) KESTRO_QUOTED(text)
#define KESTRO_C_SYMBOL(name) __asm__(KESTRO_EXPANDED_AND_QUOTED(__USER_LABEL_PREFIX__) #name)

namespace kestro {

// Functions of the HID event system that IOKit exports, but that its public headers do not declare, and the
// constants that go with them. Browsers declare them differently: SetMatching returns nothing in WebKit
// (pal/spi/mac/IOKitSPIMac.h) and an int in Chromium (components/power_metrics/m1_sensors_mac.mm). Names of our
// own, bound to IOKit's symbols, conflict with no declaration.

IOHIDEventSystemClientRef createHIDEventSystemClient(CFAllocatorRef allocator)
    KESTRO_C_SYMBOL(IOHIDEventSystemClientCreate);

void setHIDMatching(IOHIDEventSystemClientRef client, CFDictionaryRef matching)
    KESTRO_C_SYMBOL(IOHIDEventSystemClientSetMatching);

/// The last event of a type; null if there is none. The last two parameters are 0. IOHIDFamily's callback behind
/// this function takes an event and 32-bit options (HID/HIDVirtualEventService.m), Chromium's declaration 32 bits
/// and 64 bits; full registers suit both.
CFTypeRef copyHIDEvent(IOHIDServiceClientRef service, std::uint64_t type, std::uint64_t, std::uint64_t)
    KESTRO_C_SYMBOL(IOHIDServiceClientCopyEvent);

/// The number in a field of an event (IOHIDFamily's HID/HIDEventAccessors.m reads the temperature with it).
double floatValueOfHIDEvent(CFTypeRef event, std::uint32_t field) KESTRO_C_SYMBOL(IOHIDEventGetFloatValue);

inline constexpr std::uint32_t temperatureEventType = 15;
inline constexpr std::uint32_t temperatureLevelField = temperatureEventType << 16;
static_assert(temperatureLevelField == 0xF0000);

}  // namespace kestro

#undef KESTRO_C_SYMBOL
#undef KESTRO_EXPANDED_AND_QUOTED
#undef KESTRO_QUOTED
