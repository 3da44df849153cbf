#pragma once

#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>

#include <cstdint>

// Functions of the HID event system that IOKit exports, but that its public headers do not declare, and the
// constants that go with them. The names and types follow Apple's published IOHIDFamily, whose HID framework calls
// the same functions (HID/HIDEventSystemClient.m, HID/HIDEventAccessors.m). The parameters of CopyEvent are
// published nowhere; all but the first two are 0 here, so only their number matters.
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
