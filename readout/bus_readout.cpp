#include "readout/bus_readout.h"

#include <poll.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <limits>
#include <string_view>
#include <utility>

#include "readout/readout_message.h"

namespace kestro {

namespace {

constexpr char busName[] = "kestro.Readout";
constexpr char objectPath[] = "/kestro/Readout";
constexpr char interfaceName[] = "kestro.Readout";
constexpr char propertiesInterface[] = "org.freedesktop.DBus.Properties";

constexpr std::uint64_t second = 1'000'000;
constexpr std::uint64_t longestReply = 5 * second;
constexpr std::uint64_t shortestPause = second;
constexpr std::uint64_t longestPause = 30 * second;

constexpr char daemonName[] = "org.freedesktop.DBus";
constexpr char daemonPath[] = "/org/freedesktop/DBus";

struct MessageCloser {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageCloser>;

/// Microseconds of the monotonic clock, which sd-bus uses.
std::uint64_t now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * second + static_cast<std::uint64_t>(time.tv_nsec) / 1000;
}

/// A call that does not start Kestro.
Message quietCall(sd_bus& bus, const char* destination, const char* interface, const char* member) {
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(&bus, &made, destination, objectPath, interface, member) < 0) {
        return {};
    }
    sd_bus_message_set_auto_start(made, 0);
    return Message(made);
}

Message getAll(sd_bus& bus, const char* destination) {
    Message call = quietCall(bus, destination, propertiesInterface, "GetAll");
    if (call) {
        sd_bus_message_append(call.get(), "s", interfaceName);
    }
    return call;
}

void sendWithoutReply(sd_bus& bus, sd_bus_message& call) {
    sd_bus_message_set_expect_reply(&call, 0);
    sd_bus_send(&bus, &call, nullptr);
}

/// What this program prints of the readout, so that other changes are none.
ShownReadout selected(ShownReadout readout, bool wantsMemory) {
    if (!wantsMemory) {
        readout.memoryPercent.reset();
    }
    return readout;
}

const char* memberOf(Request request) {
    switch (request) {
        case Request::togglePopover:
            return "TogglePopover";
        case Request::showDashboard:
            return "ShowDashboard";
        case Request::showSettings:
            return "ShowSettings";
        case Request::toggleKeepAwake:
            return "ToggleKeepAwake";
    }
    return "";
}

}  // namespace

BusConnection openSessionBus() {
    sd_bus* opened = nullptr;
    return sd_bus_open_user(&opened) < 0 ? BusConnection() : BusConnection(opened);
}

std::optional<ShownReadout> readOnce(sd_bus& bus, bool wantsMemory) {
    const Message call = getAll(bus, busName);
    sd_bus_message* answer = nullptr;
    if (!call || sd_bus_call(&bus, call.get(), second, nullptr, &answer) < 0) {
        return std::nullopt;
    }
    const Message reply(answer);
    ShownReadout readout;
    return readProperties(*reply, readout) ? std::optional(selected(readout, wantsMemory)) : std::nullopt;
}

std::string send(sd_bus& bus, Request request, Point place) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    int result = 0;
    switch (request) {
        case Request::togglePopover:
            result = sd_bus_call_method(&bus, busName, objectPath, interfaceName, memberOf(request), &error,
                                        nullptr, "ii", place.x, place.y);
            break;
        case Request::showSettings:
            result = sd_bus_call_method(&bus, busName, objectPath, interfaceName, memberOf(request), &error,
                                        nullptr, "s", "");
            break;
        case Request::showDashboard:
        case Request::toggleKeepAwake:
            result = sd_bus_call_method(&bus, busName, objectPath, interfaceName, memberOf(request), &error,
                                        nullptr, "");
            break;
    }
    std::string reason;
    if (result < 0) {
        reason = error.message != nullptr ? error.message : "the bus does not answer";
    }
    sd_bus_error_free(&error);
    return reason;
}

ReadoutFollower::ReadoutFollower(BusConnection bus, const Wishes& wishes, Handler handler)
    : bus_(std::move(bus)), wishes_(wishes), handler_(std::move(handler)), pause_(shortestPause) {
    // Kestro sends its changes to followers only, so there is nothing to subscribe to on the bus.
    sd_bus_add_filter(bus_.get(), nullptr, onMessage, this);
    sd_bus_add_match_async(bus_.get(), nullptr,
                           "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
                           "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='kestro.Readout'",
                           onOwnerChanged, nullptr, this);
    sd_bus_call_method_async(bus_.get(), nullptr, daemonName, daemonPath, daemonName, "GetNameOwner", onOwner,
                             this, "s", busName);
}

bool ReadoutFollower::process() {
    if (retryDue_ && *retryDue_ <= now()) {
        follow();
    }
    int result = 0;
    do {
        result = sd_bus_process(bus_.get(), nullptr);
    } while (result > 0);
    return result == 0 && sd_bus_is_open(bus_.get()) > 0;
}

short ReadoutFollower::events() const {
    return static_cast<short>(std::max(sd_bus_get_events(bus_.get()), 0));
}

int ReadoutFollower::timeout() const {
    constexpr auto never = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t due = never;
    if (sd_bus_get_timeout(bus_.get(), &due) < 0) {
        due = never;
    }
    due = std::min(due, retryDue_.value_or(never));
    if (due == never) {
        return -1;
    }
    const std::uint64_t passed = now();
    return due <= passed ? 0 : static_cast<int>(std::min<std::uint64_t>((due - passed) / 1000 + 1, 60'000));
}

int ReadoutFollower::onOwnerChanged(sd_bus_message* message, void* follower, sd_bus_error*) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* owner = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &owner) > 0) {
        static_cast<ReadoutFollower*>(follower)->setOwner(owner);
    }
    return 0;
}

int ReadoutFollower::onOwner(sd_bus_message* message, void* follower, sd_bus_error*) {
    const char* owner = "";
    if (sd_bus_message_is_method_error(message, nullptr) == 0) {
        sd_bus_message_read(message, "s", &owner);
    }
    static_cast<ReadoutFollower*>(follower)->setOwner(owner);
    return 0;
}

void ReadoutFollower::setOwner(const std::string& owner) {
    owner_ = owner;
    call_.reset();
    retryDue_.reset();
    pause_ = shortestPause;
    if (owner.empty()) {
        report(std::nullopt);
    } else {
        follow();
    }
}

/// Follows before it reads: what changes after the reading is then sent.
void ReadoutFollower::follow() {
    retryDue_.reset();
    const Message message = quietCall(*bus_, owner_.c_str(), interfaceName, "Follow");
    if (message) {
        sd_bus_message_append(message.get(), "as", wishes_.memory ? 1 : 0, memoryFigure);
    }
    call(message.get(), onFollowed);
}

void ReadoutFollower::read() {
    const Message host =
        wishes_.hosting ? quietCall(*bus_, owner_.c_str(), interfaceName, "RegisterHost") : Message();
    if (host) {
        sendWithoutReply(*bus_, *host);
    }
    call(getAll(*bus_, owner_.c_str()).get(), onProperties);
}

void ReadoutFollower::call(sd_bus_message* message, sd_bus_message_handler_t onReply) {
    sd_bus_slot* slot = nullptr;
    if (message == nullptr || sd_bus_call_async(bus_.get(), &slot, message, onReply, this, longestReply) < 0) {
        retryLater();
        return;
    }
    call_.reset(slot);
}

bool ReadoutFollower::isFromOwner(sd_bus_message& message) const {
    const char* const sender = sd_bus_message_get_sender(&message);
    return sender != nullptr && owner_ == sender;
}

void ReadoutFollower::retryLater() {
    retryDue_ = now() + pause_;
    pause_ = std::min(2 * pause_, longestPause);
    report(std::nullopt);
}

int ReadoutFollower::onFollowed(sd_bus_message* message, void* follower, sd_bus_error*) {
    auto& self = *static_cast<ReadoutFollower*>(follower);
    if (self.isFromOwner(*message) && sd_bus_message_is_method_error(message, nullptr) == 0) {
        self.read();
    } else {
        self.retryLater();
    }
    return 0;
}

int ReadoutFollower::onProperties(sd_bus_message* message, void* follower, sd_bus_error*) {
    auto& self = *static_cast<ReadoutFollower*>(follower);
    ShownReadout readout;
    if (self.isFromOwner(*message) && sd_bus_message_is_method_error(message, nullptr) == 0 &&
        readProperties(*message, readout)) {
        self.pause_ = shortestPause;
        self.report(readout);
    } else {
        self.retryLater();
    }
    return 0;
}

int ReadoutFollower::onMessage(sd_bus_message* message, void* follower, sd_bus_error*) {
    auto& self = *static_cast<ReadoutFollower*>(follower);
    // Any program can send a signal to this one; only Kestro's count.
    if (!self.isFromOwner(*message) || !self.readout_ ||
        sd_bus_message_is_signal(message, propertiesInterface, "PropertiesChanged") <= 0) {
        return 0;
    }
    const char* interface = nullptr;
    if (sd_bus_message_read(message, "s", &interface) <= 0 || std::string_view(interface) != interfaceName) {
        return 0;
    }
    ShownReadout readout = *self.readout_;
    if (readProperties(*message, readout)) {
        readLosses(*message, readout);
        self.report(readout);
    }
    return 0;
}

void ReadoutFollower::report(const std::optional<ShownReadout>& readout) {
    readout_ = readout;
    handler_(readout ? std::optional(selected(*readout, wishes_.memory)) : std::nullopt);
}

}  // namespace kestro
