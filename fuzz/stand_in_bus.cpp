#include "fuzz/stand_in_bus.h"

#include "fuzz/requirement.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace kestro {

namespace {

/// Of RequestName: the caller is now the name's primary owner.
constexpr std::uint32_t isPrimaryOwner = 1;

int answer(sd_bus_message* message, void* callerName, sd_bus_error*) {
    const char* const name = sd_bus_message_get_member(message);
    const std::string_view member = name != nullptr ? name : "";
    if (member == "Hello") {
        return sd_bus_reply_method_return(message, "s", static_cast<const std::string*>(callerName)->c_str());
    }
    if (member == "RequestName") {
        return sd_bus_reply_method_return(message, "u", isPrimaryOwner);
    }
    sd_bus_reply_method_errorf(message, "org.freedesktop.DBus.Error.NameHasNoOwner", "no such name");
    return 1;  // also for a signal, which has no reply
}

/// Answers a caller until it disconnects.
void converse(int socket, std::string callerName) {
    sd_bus* made = nullptr;
    require(sd_bus_new(&made) >= 0);
    const std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> bus(made, &sd_bus_flush_close_unref);
    require(sd_bus_set_fd(made, socket, socket) >= 0 &&
            sd_bus_set_server(made, 1,
                              SD_ID128_MAKE(4b, 65, 73, 74, 72, 6f, 20, 66, 75, 7a, 7a, 20, 62, 75, 73, 21)) >= 0);
    require(sd_bus_add_filter(made, nullptr, &answer, &callerName) >= 0 && sd_bus_start(made) >= 0);
    for (;;) {
        const int processed = sd_bus_process(made, nullptr);
        if (processed < 0 || (processed == 0 && sd_bus_wait(made, UINT64_MAX) < 0)) {
            return;
        }
    }
}

}  // namespace

StandInBus::StandInBus() : listener_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    constexpr int callers = 4;
    // The kernel chooses a name in the abstract namespace, which ends with the process.
    sockaddr_un bound{};
    bound.sun_family = AF_UNIX;
    socklen_t length = offsetof(sockaddr_un, sun_path);
    require(::bind(listener_.get(), reinterpret_cast<const sockaddr*>(&bound), length) == 0);
    length = sizeof bound;
    require(::getsockname(listener_.get(), reinterpret_cast<sockaddr*>(&bound), &length) == 0);
    require(::listen(listener_.get(), callers) == 0);
    const std::string_view name(bound.sun_path, length - offsetof(sockaddr_un, sun_path));
    address_ = "unix:abstract=" + std::string(name.substr(1));
    acceptor_ = std::thread([this] { acceptCallers(); });
}

StandInBus::~StandInBus() {
    ::shutdown(listener_.get(), SHUT_RDWR);
    acceptor_.join();
    for (std::thread& conversation : conversations_) {
        conversation.join();
    }
}

void StandInBus::acceptCallers() {
    for (;;) {
        const int caller = ::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (caller < 0) {
            return;
        }
        conversations_.emplace_back(converse, caller, ":1." + std::to_string(conversations_.size() + 1));
    }
}

}  // namespace kestro
