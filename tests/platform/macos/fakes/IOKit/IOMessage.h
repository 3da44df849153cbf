#pragma once

// Only what platform/macos uses, with the values of xnu's iokit/IOKit/IOMessage.h.

#define kIOMessageCanSystemSleep 0xe0000270U
#define kIOMessageSystemWillSleep 0xe0000280U
#define kIOMessageSystemWillNotSleep 0xe0000290U
#define kIOMessageSystemHasPoweredOn 0xe0000300U
#define kIOMessageSystemWillPowerOn 0xe0000320U
