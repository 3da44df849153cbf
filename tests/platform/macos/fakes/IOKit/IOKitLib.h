#pragma once

// Only what platform/macos uses, with the types of Apple's IOKitUser (IOKitLib.h) and xnu (IOTypes.h, IOReturn.h).
// Implemented by the fakes.

#include <CoreFoundation/CoreFoundation.h>
#include <mach/mach.h>

using IOReturn = kern_return_t;
using io_object_t = mach_port_t;
using io_connect_t = io_object_t;
using io_iterator_t = io_object_t;
using io_service_t = io_object_t;
using IONotificationPortRef = struct IONotificationPort*;
using IOServiceInterestCallback = void (*)(void* context, io_service_t service, std::uint32_t messageType,
                                           void* messageArgument);

#define IO_OBJECT_NULL ((io_object_t)0)
#define kIOReturnSuccess KERN_SUCCESS
#define kIOReturnError ((IOReturn)0xe00002bc)
#define kIOReturnNotPrivileged ((IOReturn)0xe00002c1)

extern "C" {

extern const mach_port_t kIOMainPortDefault;

CFMutableDictionaryRef IOServiceMatching(const char* name);
kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching,
                                           io_iterator_t* existing);
io_object_t IOIteratorNext(io_iterator_t iterator);
kern_return_t IOObjectRelease(io_object_t object);
kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, std::uint32_t type,
                            io_connect_t* connection);
kern_return_t IOServiceClose(io_connect_t connection);
kern_return_t IOConnectCallStructMethod(mach_port_t connection, std::uint32_t selector, const void* input,
                                        std::size_t inputSize, void* output, std::size_t* outputSize);
CFRunLoopSourceRef IONotificationPortGetRunLoopSource(IONotificationPortRef port);
void IONotificationPortDestroy(IONotificationPortRef port);

}  // extern "C"
