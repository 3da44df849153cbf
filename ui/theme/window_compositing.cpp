#include "ui/theme/window_compositing.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace kestro::window_compositing {

namespace {

std::optional<bool> overridden;

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

template <typename T>
using Reply = std::unique_ptr<T, FreeReply>;

xcb_connection_t* connection() {
    const auto* const x11 = qApp ? qApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

/// XCB_ATOM_NONE when nobody has ever used the name and `onlyIfExists` is set, or when the server is gone.
xcb_atom_t atom(xcb_connection_t* x11, const std::string& name, bool onlyIfExists) {
    const auto cookie =
        xcb_intern_atom(x11, std::uint8_t{onlyIfExists}, static_cast<std::uint16_t>(name.size()), name.c_str());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x11, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0) {
        return 0;
    }
    std::free(host);
    return screen;
}

}  // namespace

bool isAvailable() {
    if (overridden) {
        return *overridden;
    }
    xcb_connection_t* const x11 = connection();
    if (!x11) {
        return true;
    }
    const xcb_atom_t manager = atom(x11, "_NET_WM_CM_S" + std::to_string(screenNumber()), true);
    if (manager == XCB_ATOM_NONE) {
        return false;
    }
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x11, xcb_get_selection_owner(x11, manager), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void setOverride(std::optional<bool> available) {
    overridden = available;
}

void requestBlurBehind(QWindow& window, const QRegion& region) {
    xcb_connection_t* const x11 = connection();
    if (!x11) {
        return;
    }
    // Only a window manager that knows the property has made its name.
    const xcb_atom_t property = atom(x11, "_KDE_NET_WM_BLUR_BEHIND_REGION", true);
    if (property == XCB_ATOM_NONE) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (region.isEmpty()) {
        xcb_delete_property(x11, id, property);
        return;
    }
    const double scale = window.devicePixelRatio();
    std::vector<std::uint32_t> pixels;
    for (const QRect& rect : region) {
        for (const int edge : {rect.x(), rect.y(), rect.width(), rect.height()}) {
            pixels.push_back(static_cast<std::uint32_t>(std::lround(edge * scale)));
        }
    }
    xcb_change_property(x11, XCB_PROP_MODE_REPLACE, id, property, XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(pixels.size()), pixels.data());
}

}  // namespace kestro::window_compositing
