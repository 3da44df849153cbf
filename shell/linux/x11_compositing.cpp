#include "shell/linux/x11_compositing.h"

#include "shell/linux/x11_display.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/shape.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace kestro {

namespace {

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

/// The atom exists only if a window manager knows the property.
xcb_atom_t blurProperty(xcb_connection_t* x11) {
    return x11_display::atom(x11, "_KDE_NET_WM_BLUR_BEHIND_REGION", x11_display::AtomCreation::onlyIfKnown);
}

}  // namespace

bool X11Compositing::isAvailable() const {
    xcb_connection_t* const x11 = x11_display::connection();
    if (!x11) {
        return true;
    }
    const xcb_atom_t manager = x11_display::atom(x11, "_NET_WM_CM_S" + std::to_string(screenNumber()),
                                                 x11_display::AtomCreation::onlyIfKnown);
    if (manager == XCB_ATOM_NONE) {
        return false;
    }
    const x11_display::Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x11, xcb_get_selection_owner(x11, manager), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool X11Compositing::canBlurBehind() const {
    xcb_connection_t* const x11 = x11_display::connection();
    return x11 != nullptr && blurProperty(x11) != XCB_ATOM_NONE;
}

bool X11Compositing::canChange() const {
    return x11_display::connection() != nullptr;
}

void X11Compositing::requestBlurBehind(QWindow& window, const QRegion& region) const {
    xcb_connection_t* const x11 = x11_display::connection();
    if (!x11) {
        return;
    }
    const xcb_atom_t property = blurProperty(x11);
    if (property == XCB_ATOM_NONE) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (region.isEmpty()) {
        xcb_delete_property(x11, id, property);
        return;
    }
    std::vector<std::uint32_t> pixels;
    for (const QRect& rect : region) {
        for (const int edge : {rect.x(), rect.y(), rect.width(), rect.height()}) {
            pixels.push_back(static_cast<std::uint32_t>(edge));
        }
    }
    xcb_change_property(x11, XCB_PROP_MODE_REPLACE, id, property, XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(pixels.size()), pixels.data());
}

bool X11Compositing::cutTo(QWindow& window, const QRegion& region) const {
    xcb_connection_t* const x11 = x11_display::connection();
    if (!x11 || !x11_display::hasExtension(x11, xcb_shape_id)) {
        return false;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (region.isEmpty()) {
        xcb_shape_mask(x11, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, id, 0, 0, XCB_PIXMAP_NONE);
        return true;
    }
    std::vector<xcb_rectangle_t> bands;
    for (const QRect& rect : region) {
        bands.push_back({static_cast<std::int16_t>(rect.x()), static_cast<std::int16_t>(rect.y()),
                         static_cast<std::uint16_t>(rect.width()), static_cast<std::uint16_t>(rect.height())});
    }
    xcb_shape_rectangles(x11, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, id, 0, 0,
                         static_cast<std::uint32_t>(bands.size()), bands.data());
    return true;
}

}  // namespace kestro
