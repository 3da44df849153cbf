#include "platform/desktop/wayland_idle_inhibition.h"

#include <algorithm>
#include <utility>

namespace kestro {

namespace {

constexpr std::uint32_t display = 1;
constexpr std::uint32_t registry = 2;
constexpr std::uint32_t noObject = 0;

/// Every protocol that is used has had these messages since its first version.
constexpr std::uint32_t firstVersion = 1;

// Names as in wayland.xml, wlr-layer-shell-unstable-v1.xml and idle-inhibit-unstable-v1.xml.
namespace request {
constexpr std::uint16_t displaySync = 0;
constexpr std::uint16_t displayGetRegistry = 1;
constexpr std::uint16_t registryBind = 0;
constexpr std::uint16_t compositorCreateSurface = 0;
constexpr std::uint16_t compositorCreateRegion = 1;
constexpr std::uint16_t shmCreatePool = 0;
constexpr std::uint16_t shmPoolCreateBuffer = 0;
constexpr std::uint16_t surfaceDestroy = 0;
constexpr std::uint16_t surfaceAttach = 1;
constexpr std::uint16_t surfaceDamage = 2;
constexpr std::uint16_t surfaceSetInputRegion = 5;
constexpr std::uint16_t surfaceCommit = 6;
constexpr std::uint16_t regionDestroy = 0;
constexpr std::uint16_t layerShellGetLayerSurface = 0;
constexpr std::uint16_t layerSurfaceSetSize = 0;
constexpr std::uint16_t layerSurfaceSetExclusiveZone = 2;
constexpr std::uint16_t layerSurfaceAckConfigure = 6;
constexpr std::uint16_t layerSurfaceDestroy = 7;
constexpr std::uint16_t idleInhibitManagerCreateInhibitor = 1;
constexpr std::uint16_t idleInhibitorDestroy = 0;
}  // namespace request

namespace event {
constexpr std::uint16_t displayError = 0;
constexpr std::uint16_t registryGlobal = 0;
constexpr std::uint16_t layerSurfaceConfigure = 0;
constexpr std::uint16_t layerSurfaceClosed = 1;
}  // namespace event

constexpr std::uint32_t formatARGB8888 = 0;
constexpr std::uint32_t layerBackground = 0;

/// The surface neither reserves space nor gives way to those that do.
constexpr auto ignoringOthers = static_cast<std::uint32_t>(-1);

/// In the order of the enumeration.
constexpr std::array interfaces{"wl_compositor", "wl_shm", "zwlr_layer_shell_v1", "zwp_idle_inhibit_manager_v1"};
constexpr auto screenInterface = "wl_output";

}  // namespace

WaylandIdleInhibition::WaylandIdleInhibition() {
    send(WaylandRequest(display, request::displayGetRegistry).number(registry));
    listed_ = newObject();
    send(WaylandRequest(display, request::displaySync).number(listed_));
}

void WaylandIdleInhibition::receive(std::string_view bytes) {
    events_.append(bytes);
    while (!isOver_) {
        const auto next = events_.next();
        if (!next) {
            break;
        }
        take(*next);
    }
    if (events_.isMalformed()) {
        fail();
    }
}

WaylandIdleInhibition::Requests WaylandIdleInhibition::takeRequests() {
    return std::exchange(requests_, {});
}

void WaylandIdleInhibition::take(const WaylandEvent& next) {
    WaylandArguments arguments(next.arguments);
    if (next.object == display) {
        if (next.opcode == event::displayError) {
            fail();
        }
    } else if (next.object == registry) {
        if (next.opcode == event::registryGlobal) {
            takeGlobal(arguments);
        }
    } else if (next.object == listed_) {
        bindProtocols();
    } else if (next.object == settled_) {
        state_ = LockState::held;
    } else if (next.object == layerSurface_ && next.opcode == event::layerSurfaceConfigure) {
        configure(arguments.number());
    } else if (next.object == layerSurface_ && next.opcode == event::layerSurfaceClosed) {
        hide();
        show();
    }
}

void WaylandIdleInhibition::takeGlobal(WaylandArguments arguments) {
    const std::uint32_t name = arguments.number();
    const std::string_view interface = arguments.text();
    const auto found = std::ranges::find(interfaces, interface);
    if (found != interfaces.end()) {
        globals_[static_cast<std::size_t>(found - interfaces.begin())].name = name;
    } else if (interface == screenInterface) {
        ++untriedScreens_;
        if (state_ == LockState::refused) {
            show();
        }
    }
}

void WaylandIdleInhibition::bindProtocols() {
    listed_ = noObject;
    if (!std::ranges::all_of(globals_, [](const Global& global) { return global.name.has_value(); })) {
        fail();
        return;
    }
    for (std::size_t index = 0; index < protocolCount; ++index) {
        auto& global = globals_.at(index);
        global.object = newObject();
        send(WaylandRequest(registry, request::registryBind)
                 .number(*global.name)
                 .text(interfaces.at(index))
                 .number(firstVersion)
                 .number(global.object));
    }
    const std::uint32_t pool = newObject();
    send(WaylandRequest(globals_[sharedMemory].object, request::shmCreatePool).number(pool).number(pixelSize));
    requests_.needsPixel = true;
    buffer_ = newObject();
    send(WaylandRequest(pool, request::shmPoolCreateBuffer)
             .number(buffer_)
             .number(0)  // offset
             .number(1)  // width
             .number(1)  // height
             .number(pixelSize)
             .number(formatARGB8888));
    show();
}

/// Commits the surface without contents, which the compositor answers with its first configuration.
void WaylandIdleInhibition::show() {
    state_ = untriedScreens_ > 0 ? LockState::asking : LockState::refused;
    if (state_ == LockState::refused) {
        return;
    }
    --untriedScreens_;
    surface_ = newObject();
    send(WaylandRequest(globals_[compositor].object, request::compositorCreateSurface).number(surface_));
    const std::uint32_t nowhere = newObject();
    send(WaylandRequest(globals_[compositor].object, request::compositorCreateRegion).number(nowhere));
    send(WaylandRequest(surface_, request::surfaceSetInputRegion).number(nowhere));
    send(WaylandRequest(nowhere, request::regionDestroy));
    layerSurface_ = newObject();
    send(WaylandRequest(globals_[layerShell].object, request::layerShellGetLayerSurface)
             .number(layerSurface_)
             .number(surface_)
             .number(noObject)  // on the screen that the compositor chooses
             .number(layerBackground)
             .text("kestro-keep-awake"));
    send(WaylandRequest(layerSurface_, request::layerSurfaceSetSize).number(1).number(1));
    send(WaylandRequest(layerSurface_, request::layerSurfaceSetExclusiveZone).number(ignoringOthers));
    send(WaylandRequest(surface_, request::surfaceCommit));
}

void WaylandIdleInhibition::configure(std::uint32_t serial) {
    send(WaylandRequest(layerSurface_, request::layerSurfaceAckConfigure).number(serial));
    if (inhibitor_ == noObject) {
        send(WaylandRequest(surface_, request::surfaceAttach).number(buffer_).number(0).number(0));
        send(WaylandRequest(surface_, request::surfaceDamage).number(0).number(0).number(1).number(1));
    }
    send(WaylandRequest(surface_, request::surfaceCommit));
    if (inhibitor_ == noObject) {
        inhibitor_ = newObject();
        send(WaylandRequest(globals_[idleInhibitManager].object, request::idleInhibitManagerCreateInhibitor)
                 .number(inhibitor_)
                 .number(surface_));
        settled_ = newObject();
        send(WaylandRequest(display, request::displaySync).number(settled_));
    }
}

void WaylandIdleInhibition::hide() {
    if (inhibitor_ != noObject) {
        send(WaylandRequest(inhibitor_, request::idleInhibitorDestroy));
    }
    send(WaylandRequest(layerSurface_, request::layerSurfaceDestroy));
    send(WaylandRequest(surface_, request::surfaceDestroy));
    inhibitor_ = layerSurface_ = surface_ = settled_ = noObject;
}

void WaylandIdleInhibition::fail() {
    isOver_ = true;
    state_ = LockState::refused;
}

}  // namespace kestro
