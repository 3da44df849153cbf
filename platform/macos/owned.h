#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/pwr_mgt/IOPMLib.h>
#include <dispatch/dispatch.h>
#include <mach/mach.h>

#include <utility>

namespace kestro {

// One owner type for each kind of object that the system hands out. Move-only; each releases its object on
// destruction, and is empty (a null pointer or port) after a failed call. Any thread.

template <typename Handle, typename Releaser>
class Owned {
public:
    Owned() = default;

    /// Takes over a reference that the caller owns.
    explicit Owned(Handle handle) : handle_(handle) {}

    Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, Handle{})) {}
    Owned& operator=(Owned&& other) noexcept {
        if (this != &other) {
            reset(std::exchange(other.handle_, Handle{}));
        }
        return *this;
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { reset(); }

    Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != Handle{}; }

    /// Releases what is owned and takes over `handle`.
    void reset(Handle handle = Handle{}) {
        if (handle_ != Handle{}) {
            Releaser{}(handle_);
        }
        handle_ = handle;
    }

    /// Gives the object up without releasing it.
    [[nodiscard]] Handle take() { return std::exchange(handle_, Handle{}); }

    /// Where a function stores an object that it hands out; releases what was owned.
    Handle* out() {
        reset();
        return &handle_;
    }

private:
    Handle handle_{};
};

struct CFReleaser {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

struct IOObjectReleaser {
    void operator()(io_object_t object) const { IOObjectRelease(object); }
};

struct IOConnectionReleaser {
    void operator()(io_connect_t connection) const { IOServiceClose(connection); }
};

struct NotificationPortReleaser {
    void operator()(IONotificationPortRef port) const { IONotificationPortDestroy(port); }
};

struct SystemPowerNotifierReleaser {
    void operator()(io_object_t notifier) const { IODeregisterForSystemPower(&notifier); }
};

struct SendRightReleaser {
    void operator()(mach_port_t port) const { mach_port_deallocate(mach_task_self(), port); }
};

struct DispatchReleaser {
    template <typename Object>
    void operator()(Object object) const {
        dispatch_release(object);
    }
};

/// A Core Foundation object from a function with Create or Copy in its name.
template <typename Reference>
using CFOwned = Owned<Reference, CFReleaser>;

/// An object of the I/O registry.
using IOObject = Owned<io_object_t, IOObjectReleaser>;

/// An open connection to a driver.
using IOConnection = Owned<io_connect_t, IOConnectionReleaser>;

/// Where IOKit sends notifications; releasing it removes its source from the run loop. Not a Core Foundation
/// object.
using NotificationPort = Owned<IONotificationPortRef, NotificationPortReleaser>;

/// The registration for changes of the system's power.
using SystemPowerNotifier = Owned<io_object_t, SystemPowerNotifierReleaser>;

/// The right to send to a mach port.
using SendRight = Owned<mach_port_t, SendRightReleaser>;

/// A queue, group or source of the dispatch library.
template <typename Object>
using DispatchOwned = Owned<Object, DispatchReleaser>;

}  // namespace kestro
