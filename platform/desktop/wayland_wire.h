#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// A request to a Wayland compositor. Messages in both directions consist of 32-bit words in the machine's byte
/// order: the object, size and number of the message, and its arguments (Wayland protocol documentation, "Wire
/// Format").
class WaylandRequest {
public:
    WaylandRequest(std::uint32_t object, std::uint16_t opcode);

    /// An unsigned or signed number, an object, or the identifier of a new object.
    WaylandRequest& number(std::uint32_t value);
    WaylandRequest& text(std::string_view value);

    std::string bytes() const;

private:
    const std::uint32_t object_;
    const std::uint16_t opcode_;
    std::string arguments_;
};

struct WaylandEvent {
    std::uint32_t object = 0;
    std::uint16_t opcode = 0;
    std::string arguments;
};

/// The arguments of an event, in order. Those that are missing or do not fit read as 0 or empty.
class WaylandArguments {
public:
    explicit WaylandArguments(std::string_view bytes) : rest_(bytes) {}

    std::uint32_t number();
    std::string_view text();

private:
    std::string_view rest_;
};

/// The events in a stream of bytes that arrives in any pieces.
class WaylandEventStream {
public:
    void append(std::string_view bytes) { bytes_ += bytes; }

    /// The next event; nullopt: none has arrived as a whole, or the stream is malformed.
    std::optional<WaylandEvent> next();

    /// Whether a message cannot have the size that it states. The stream has no further events then.
    bool isMalformed() const { return isMalformed_; }

private:
    std::string bytes_;
    bool isMalformed_ = false;
};

}  // namespace kestro
