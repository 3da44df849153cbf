#pragma once

#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>

#include <cstdint>

// Functions of the HID event system that IOKit exports, but that its public headers do not declare, and the
// constants that go with them. Their names and types follow Apple's published sources: WebKit declares
// IOHIDEventSystemClientCreate and the types of an event's fields (pal/spi/cocoa/IOKitSPI.h), and IOHIDFamily's
// HID framework calls the next one and the last one (HID/HIDEventSystemClient.m, HID/HIDEventAccessors.m).
// CopyEvent is declared nowhere; it has the parameters of the callback behind it (HID/HIDVirtualEventService.m),
// and all but the first two are 0 here.
extern "C" {

using IOHIDEventRef = struct __IOHIDEvent*;

IOHIDEventSystemClientRef IOHIDEventSystemClientCreate(CFAllocatorRef allocator);
void IOHIDEventSystemClientSetMatching(IOHIDEventSystemClientRef client, CFDictionaryRef matching);
IOHIDEventRef IOHIDServiceClientCopyEvent(IOHIDServiceClientRef service, std::uint32_t type,
                                          IOHIDEventRef matching, std::uint32_t options);
double IOHIDEventGetFloatValue(IOHIDEventRef event, std::uint32_t field);

}  // extern "C"

namespace kestro {

inline constexpr std::uint32_t temperatureEventType = 15;
inline constexpr std::uint32_t temperatureLevelField = temperatureEventType << 16;
static_assert(temperatureLevelField == 0xF0000);

}  // namespace kestro
