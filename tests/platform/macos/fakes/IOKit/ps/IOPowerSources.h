#pragma once

// Only what platform/macos uses, with the types of Apple's IOKitUser. Implemented by the fakes.

#include <CoreFoundation/CoreFoundation.h>

using IOPowerSourceCallbackType = void (*)(void* context);

extern "C" {

CFTypeRef IOPSCopyPowerSourcesInfo();
CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef information);
CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef information, CFTypeRef source);
CFRunLoopSourceRef IOPSNotificationCreateRunLoopSource(IOPowerSourceCallbackType callback, void* context);

}  // extern "C"
