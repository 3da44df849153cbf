#pragma once

// Only what platform/macos uses, with the types of Apple's IOKitUser. Implemented by the fakes.

#include <CoreFoundation/CoreFoundation.h>

using IOHIDServiceClientRef = struct __IOHIDServiceClient*;

extern "C" CFTypeRef IOHIDServiceClientCopyProperty(IOHIDServiceClientRef service, CFStringRef key);
