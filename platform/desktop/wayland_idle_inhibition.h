#pragma once

#include "platform/desktop/lock_services.h"
#include "platform/desktop/wayland_wire.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

/// The conversation with a Wayland compositor that keeps its screens on, without the socket: takes the bytes that
/// arrive, and returns those to send. The protocol inhibits for as long as a surface of ours is on a screen. Ours
/// is one transparent pixel on the background's layer, which takes neither input nor space. It needs no window of
/// the toolkit, which may be connected to an X server.
///
/// It speaks the wire format itself: these few messages need neither libwayland, which would have to be loaded at
/// run time to cost nothing under X11, nor the description of the layer shell, which Debian 12 does not package.
class WaylandIdleInhibition {
public:
    /// The contents of the surface: a file of that many zero bytes.
    static constexpr std::size_t pixelSize = 4;

    struct Requests {
        std::string bytes;
        bool needsPixel = false;  ///< the descriptor of the pixel's file goes with them
    };

    WaylandIdleInhibition();

    /// Refused also while there is no screen; it asks again when one appears.
    LockState state() const { return state_; }

    /// Whether this compositor will never grant it: it lacks a protocol, or has ended the conversation.
    bool isOver() const { return isOver_; }

    void receive(std::string_view bytes);

    /// What to send now; only once.
    Requests takeRequests();

private:
    enum Protocol : std::size_t { compositor, sharedMemory, layerShell, idleInhibitManager, protocolCount };

    struct Global {
        std::optional<std::uint32_t> name;
        std::uint32_t object = 0;
    };

    void take(const WaylandEvent& event);
    void takeGlobal(WaylandArguments arguments);
    void bindProtocols();
    void show();
    void configure(std::uint32_t serial);
    void hide();
    void fail();
    void send(const WaylandRequest& request) { requests_.bytes += request.bytes(); }
    std::uint32_t newObject() { return ++lastObject_; }

    WaylandEventStream events_;
    Requests requests_;
    LockState state_ = LockState::asking;
    bool isOver_ = false;
    std::uint32_t lastObject_ = 2;  // the display and the registry
    std::array<Global, protocolCount> globals_;
    int untriedScreens_ = 0;     // a surface may be closed once for every screen, so that this ends
    std::uint32_t listed_ = 0;   // the callback that ends the list of protocols
    std::uint32_t settled_ = 0;  // the callback after the inhibitor was made
    std::uint32_t buffer_ = 0;
    std::uint32_t surface_ = 0;
    std::uint32_t layerSurface_ = 0;
    std::uint32_t inhibitor_ = 0;
};

}  // namespace kestro
