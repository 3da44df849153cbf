#include "platform/desktop/bus_probe.h"

#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <thread>

namespace kestro {

namespace {

using namespace std::chrono_literals;

/// The text before the first `separator`, which is removed from `text` with it.
std::string_view takeUntil(std::string_view& text, char separator) {
    const auto end = std::min(text.find(separator), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

/// Decodes the %XX of an address; nullopt if malformed.
std::optional<std::string> unescaped(std::string_view value) {
    std::string decoded;
    while (!value.empty()) {
        if (value.front() != '%') {
            decoded += value.front();
            value.remove_prefix(1);
            continue;
        }
        unsigned byte = 0;
        const std::string_view digits = value.substr(1, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (error != std::errc() || end != digits.data() + 2) {
            return std::nullopt;
        }
        decoded += static_cast<char>(byte);
        value.remove_prefix(3);
    }
    return decoded;
}

/// A socket's name as in sockaddr_un: in the abstract namespace it starts with a zero byte. Nullopt: the address
/// is of another kind.
std::optional<std::string> socketName(std::string_view address) {
    if (takeUntil(address, ':') != "unix") {
        return std::nullopt;
    }
    while (!address.empty()) {
        std::string_view value = takeUntil(address, ',');
        const std::string_view key = takeUntil(value, '=');
        if (key == "path") {
            return unescaped(value);
        }
        if (key == "abstract") {
            const auto name = unescaped(value);
            return name ? std::optional('\0' + *name) : std::nullopt;
        }
    }
    return std::nullopt;
}

/// An unconnected socket, and whether connecting it has succeeded, failed, or has to be tried again because the
/// queue of the bus is full.
enum class Connection : std::uint8_t { made, failed, busy };

Connection connectTo(int socket, const std::string& name) {
    sockaddr_un address{};
    if (name.size() >= sizeof address.sun_path) {
        return Connection::failed;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.data(), name.size());
    // A path ends with a zero byte; an abstract name ends where its length says.
    const bool isPath = name.empty() || name.front() != '\0';
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + (isPath ? 1 : 0));
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), length) == 0) {
        return Connection::made;
    }
    return errno == EAGAIN || errno == EINTR ? Connection::busy : Connection::failed;
}

/// Asks to authenticate as this user. The zero byte before the first line carries the credentials.
bool sendRequest(int socket) {
    std::string identity;
    for (const char digit : std::to_string(::getuid())) {
        identity += fmt::format("{:02x}", static_cast<unsigned>(digit));
    }
    const std::string request = '\0' + fmt::format("AUTH EXTERNAL {}\r\n", identity);
    return ::send(socket, request.data(), request.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(request.size());
}

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

BusProbe::BusProbe(const std::string& addresses) {
    std::string_view first = addresses;
    const auto name = socketName(takeUntil(first, ';'));
    if (!name) {
        state_ = State::answers;
        return;
    }
    name_ = *name;
    socket_ = Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    connect();
}

void BusProbe::connect() {
    const Connection connection = socket_.isOpen() ? connectTo(socket_.get(), name_) : Connection::failed;
    if (connection == Connection::made && sendRequest(socket_.get())) {
        state_ = State::waiting;
    } else {
        state_ = connection == Connection::busy ? State::busy : State::silent;
    }
}

std::string BusProbe::sessionAddresses() {
    if (const std::string address = variable("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        return address;
    }
    const std::string socket = variable("XDG_RUNTIME_DIR") + "/bus";
    struct stat found {};
    return ::stat(socket.c_str(), &found) == 0 && S_ISSOCK(found.st_mode) ? "unix:path=" + socket : "";
}

std::string BusProbe::systemAddresses() {
    const std::string address = variable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? "unix:path=/run/dbus/system_bus_socket" : address;
}

bool BusProbe::answersWithin(std::chrono::milliseconds bound) {
    // Nothing announces a free place in the queue of the bus.
    constexpr std::chrono::milliseconds pauseWhileBusy(5);
    const auto deadline = std::chrono::steady_clock::now() + bound;
    while (state_ == State::waiting || state_ == State::busy) {
        const auto left = std::max(
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()), 0ms);
        if (state_ == State::busy) {
            if (left == 0ms) {
                return false;
            }
            std::this_thread::sleep_for(std::min(left, pauseWhileBusy));
            connect();
            continue;
        }
        pollfd answer{socket_.get(), POLLIN, 0};
        const int ready = ::poll(&answer, 1, static_cast<int>(left.count()));
        if (ready > 0) {
            char byte = 0;
            state_ = ::read(socket_.get(), &byte, 1) == 1 ? State::answers : State::silent;
        } else if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
    socket_.close();
    return state_ == State::answers;
}

}  // namespace kestro
