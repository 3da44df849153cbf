#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "readout/options.h"
#include "readout/shown_readout.h"

namespace kestro {

struct BusCloser {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using BusConnection = std::unique_ptr<sd_bus, BusCloser>;

struct SlotCloser {
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

/// A connection to the session bus; null: there is no bus.
BusConnection openSessionBus();

/// The current readout; nullopt: Kestro is not running, or does not answer within a second. Does not start it.
std::optional<ShownReadout> readOnce(sd_bus& bus, bool wantsMemory);

/// Asks Kestro for something; the bus starts it if necessary. Returns why it failed, empty if it did not.
/// `place` is that of the popover.
std::string send(sd_bus& bus, Request request, Point place = {});

/// Follows the readout on one connection to the bus. Does nothing by itself: its owner waits for the connection's
/// descriptor. A Kestro that refuses, fails or does not answer counts as not running and is asked again after a
/// pause. Destruction ends the connection.
class ReadoutFollower {
public:
    /// Called with the new readout; nullopt: Kestro is not running.
    using Handler = std::function<void(const std::optional<ShownReadout>& readout)>;

    struct Wishes {
        bool memory = false;   ///< also follow the share of used memory
        bool hosting = false;  ///< register this program as the readout's host
    };

    /// Reports the first readout as soon as it is known.
    ReadoutFollower(BusConnection bus, const Wishes& wishes, Handler handler);
    ReadoutFollower(const ReadoutFollower&) = delete;
    ReadoutFollower& operator=(const ReadoutFollower&) = delete;

    /// Handles everything that has arrived. False: the bus is lost.
    bool process();

    /// What to wait for until the next `process`.
    int descriptor() const { return sd_bus_get_fd(bus_.get()); }
    short events() const;

    /// Milliseconds until `process` is due without an event; -1: never.
    int timeout() const;

private:
    static int onOwnerChanged(sd_bus_message* message, void* follower, sd_bus_error* error);
    static int onOwner(sd_bus_message* message, void* follower, sd_bus_error* error);
    static int onFollowed(sd_bus_message* message, void* follower, sd_bus_error* error);
    static int onProperties(sd_bus_message* message, void* follower, sd_bus_error* error);
    static int onMessage(sd_bus_message* message, void* follower, sd_bus_error* error);

    void setOwner(const std::string& owner);
    void follow();
    void read();
    void call(sd_bus_message* message, sd_bus_message_handler_t onReply);
    bool isFromOwner(sd_bus_message& message) const;
    void retryLater();
    void report(const std::optional<ShownReadout>& readout);

    BusConnection bus_;
    const Wishes wishes_;
    const Handler handler_;
    std::string owner_;  // the unique name of Kestro's connection; empty: not running
    std::optional<ShownReadout> readout_;
    std::unique_ptr<sd_bus_slot, SlotCloser> call_;  // waits for a reply of the owner

    // In microseconds of the monotonic clock.
    std::optional<std::uint64_t> retryDue_;
    std::uint64_t pause_;
};

}  // namespace kestro
