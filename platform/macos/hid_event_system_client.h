#pragma once

#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>

#include <cstdint>

// The functions of the HID event system that IOKit exports without declaring them in its public headers, and the
// constants that go with them. The names, the event type (the sixteenth of its enumeration), the field (the event
// type in the upper half) and the result types are those of IOKitUser and IOHIDFamily, which Apple publishes: the
// wrappers in IOHIDFamily's HID/HIDEventSystemClient.m and HID/HIDEventAccessors.m call the same functions.
extern "C" {

using IOHIDEventRef = struct __IOHIDEvent*;

IOHIDEventSystemClientRef IOHIDEventSystemClientCreate(CFAllocatorRef allocator);
void IOHIDEventSystemClientSetMatching(IOHIDEventSystemClientRef client, CFDictionaryRef matching);
IOHIDEventRef IOHIDServiceClientCopyEvent(IOHIDServiceClientRef service, std::int64_t type, std::int32_t options,
                                          std::int64_t timestamp);
double IOHIDEventGetFloatValue(IOHIDEventRef event, std::int32_t field);

}  // extern "C"

namespace kestro {

inline constexpr std::int64_t temperatureEventType = 15;
inline constexpr std::int32_t temperatureLevelField = temperatureEventType << 16;
static_assert(temperatureLevelField == 0xF0000);

}  // namespace kestro
