#pragma once

// Only what platform/macos uses, with the types of Apple's IOKitUser. Implemented by the fakes.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

CFTypeRef IOPSCopyPowerSourcesInfo();
CFArrayRef IOPSCopyPowerSourcesList(CFTypeRef information);
CFDictionaryRef IOPSGetPowerSourceDescription(CFTypeRef information, CFTypeRef source);

}  // extern "C"
