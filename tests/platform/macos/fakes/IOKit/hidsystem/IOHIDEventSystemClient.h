#pragma once

// Only what platform/macos uses, with the types of Apple's IOKitUser. Implemented by the fakes.

#include <CoreFoundation/CoreFoundation.h>

using IOHIDEventSystemClientRef = struct __IOHIDEventSystemClient*;

extern "C" CFArrayRef IOHIDEventSystemClientCopyServices(IOHIDEventSystemClientRef client);
