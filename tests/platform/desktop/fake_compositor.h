#pragma once

#include "platform/desktop/wayland_wire.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestro::test {

/// A Wayland compositor, as far as it concerns idle inhibitors: takes the bytes of requests, and returns those of
/// its events. Whatever a real one would end the connection for is an error here.
class FakeCompositor {
public:
    FakeCompositor() = default;
    FakeCompositor(const FakeCompositor&) = delete;
    FakeCompositor& operator=(const FakeCompositor&) = delete;

    /// The protocols that it offers; their names count from 1.
    std::vector<std::string> offered{"wl_compositor", "wl_shm", "wl_seat", "zwlr_layer_shell_v1",
                                     "zwp_idle_inhibit_manager_v1"};
    int screens = 1;
    bool closesSurfaces = false;

    std::string answer(std::string_view requests) {
        stream_.append(requests);
        while (const auto request = stream_.next()) {
            WaylandArguments arguments(request->arguments);
            take(*request, arguments);
        }
        return std::exchange(events_, {});
    }

    /// The screens are kept on: an inhibitor exists, and its surface is on a screen.
    bool isInhibited() const { return count("zwp_idle_inhibitor_v1") > 0 && isShown_; }

    std::ptrdiff_t count(std::string_view interface) const {
        return std::ranges::count_if(objects_,
                                     [interface](const auto& entry) { return entry.second == interface; });
    }

    std::string unplugScreen() {
        --screens;
        isShown_ = false;
        send(layerSurface_, 1);
        return std::exchange(events_, {});
    }

    std::string plugScreen() {
        ++screens;
        announce("wl_output");
        return std::exchange(events_, {});
    }

    /// Configures the surface once more, as after a change of the screen's mode.
    std::string reconfigure() {
        configure();
        return std::exchange(events_, {});
    }

    static std::string error() { return WaylandRequest(1, 0).number(1).number(3).text("out of memory").bytes(); }

    const std::vector<std::string>& errors() const { return errors_; }

private:
    void take(const WaylandEvent& request, WaylandArguments& arguments) {
        const auto object = objects_.find(request.object);
        if (object == objects_.end()) {
            fail("a request to object " + std::to_string(request.object));
            return;
        }
        const std::string call = object->second + " " + std::to_string(request.opcode);
        const auto handler = handlers_.find(call);
        if (handler == handlers_.end()) {
            fail("the request " + call);
            return;
        }
        object_ = request.object;
        handler->second(arguments);
    }

    /// Takes the identifier of a new object. Compositors accept no gaps.
    std::uint32_t add(WaylandArguments& arguments, const std::string& interface) {
        const std::uint32_t identifier = arguments.number();
        if (identifier != ++lastObject_) {
            fail("the identifier " + std::to_string(identifier));
        }
        objects_[identifier] = interface;
        return identifier;
    }

    void remove() {
        objects_.erase(object_);
        sendEvent(WaylandRequest(1, 1).number(object_));
    }

    void list(WaylandArguments& arguments) {
        add(arguments, "wl_registry");
        for (const auto& interface : offered) {
            announce(interface);
        }
        for (int screen = 0; screen < screens; ++screen) {
            announce("wl_output");
        }
    }

    void announce(const std::string& interface) {
        sendEvent(WaylandRequest(2, 0).number(++lastName_).text(interface).number(1));
    }

    void bind(WaylandArguments& arguments) {
        const std::uint32_t name = arguments.number();
        const std::string interface(arguments.text());
        if (arguments.number() != 1 || offered.at(name - 1) != interface) {
            fail("a binding of " + interface);
        }
        add(arguments, interface);
    }

    void createLayerSurface(WaylandArguments& arguments) {
        layerSurface_ = add(arguments, "zwlr_layer_surface_v1");
        hasContents_ = isConfigured_ = false;
    }

    void commit() {
        if (hasContents_ && !isConfigured_) {
            fail("contents before the first configuration");
        }
        if (hasContents_) {
            isShown_ = screens > 0;
        } else if (screens > 0 && !closesSurfaces) {
            configure();
        } else {
            send(layerSurface_, 1);
        }
    }

    void configure() { sendEvent(WaylandRequest(layerSurface_, 0).number(++serial_).number(1).number(1)); }

    void acknowledge(WaylandArguments& arguments) {
        isConfigured_ = arguments.number() == serial_;
        if (!isConfigured_) {
            fail("another serial");
        }
    }

    void send(std::uint32_t object, std::uint16_t opcode) { sendEvent(WaylandRequest(object, opcode)); }
    void sendEvent(const WaylandRequest& event) { events_ += event.bytes(); }
    void fail(const std::string& what) { errors_.push_back(what); }

    /// By interface and number of the request.
    const std::map<std::string, std::function<void(WaylandArguments&)>> handlers_{
        {"wl_display 0",
         [this](WaylandArguments& arguments) {
             sendEvent(WaylandRequest(add(arguments, "wl_callback"), 0).number(0));
             objects_.erase(lastObject_);
             sendEvent(WaylandRequest(1, 1).number(lastObject_));
         }},
        {"wl_display 1", [this](WaylandArguments& arguments) { list(arguments); }},
        {"wl_registry 0", [this](WaylandArguments& arguments) { bind(arguments); }},
        {"wl_compositor 0", [this](WaylandArguments& arguments) { add(arguments, "wl_surface"); }},
        {"wl_compositor 1", [this](WaylandArguments& arguments) { add(arguments, "wl_region"); }},
        {"wl_region 0", [this](WaylandArguments&) { remove(); }},
        {"wl_shm 0", [this](WaylandArguments& arguments) { add(arguments, "wl_shm_pool"); }},
        {"wl_shm_pool 0", [this](WaylandArguments& arguments) { add(arguments, "wl_buffer"); }},
        {"wl_surface 0", [this](WaylandArguments&) { remove(); }},
        {"wl_surface 1",
         [this](WaylandArguments& arguments) { hasContents_ = objects_[arguments.number()] == "wl_buffer"; }},
        {"wl_surface 2", [](WaylandArguments&) {}},
        {"wl_surface 5", [](WaylandArguments&) {}},
        {"wl_surface 6", [this](WaylandArguments&) { commit(); }},
        {"zwlr_layer_shell_v1 0", [this](WaylandArguments& arguments) { createLayerSurface(arguments); }},
        {"zwlr_layer_surface_v1 0", [](WaylandArguments&) {}},
        {"zwlr_layer_surface_v1 2", [](WaylandArguments&) {}},
        {"zwlr_layer_surface_v1 6", [this](WaylandArguments& arguments) { acknowledge(arguments); }},
        {"zwlr_layer_surface_v1 7", [this](WaylandArguments&) { remove(); }},
        {"zwp_idle_inhibit_manager_v1 1",
         [this](WaylandArguments& arguments) { add(arguments, "zwp_idle_inhibitor_v1"); }},
        {"zwp_idle_inhibitor_v1 0", [this](WaylandArguments&) { remove(); }},
    };

    WaylandEventStream stream_;
    std::string events_;
    std::vector<std::string> errors_;
    std::map<std::uint32_t, std::string> objects_{{1, "wl_display"}};
    std::uint32_t object_ = 0;
    std::uint32_t lastName_ = 0;
    std::uint32_t lastObject_ = 1;
    std::uint32_t layerSurface_ = 0;
    std::uint32_t serial_ = 7;
    bool isConfigured_ = false;
    bool hasContents_ = false;
    bool isShown_ = false;
};

}  // namespace kestro::test
