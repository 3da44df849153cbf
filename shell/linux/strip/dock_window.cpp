#include "shell/linux/strip/dock_window.h"

#include "shell/linux/x11_display.h"

#include <QWidget>

#include <cstdint>
#include <string_view>

namespace kestro {

namespace {

void setNumber(xcb_connection_t* x11, xcb_window_t window, std::string_view property, xcb_atom_t type,
               std::uint32_t value) {
    constexpr std::uint8_t bits = 32;
    const xcb_atom_t name = x11_display::atom(x11, property);
    if (name != XCB_ATOM_NONE) {
        xcb_change_property(x11, XCB_PROP_MODE_REPLACE, window, name, type, bits, 1, &value);
    }
}

}  // namespace

void makeDock(QWidget& window) {
    xcb_connection_t* const x11 = x11_display::connection();
    if (x11 == nullptr) {
        return;
    }
    constexpr std::uint32_t everyWorkspace = 0xFFFFFFFF;
    const auto id = static_cast<xcb_window_t>(window.winId());
    setNumber(x11, id, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, x11_display::atom(x11, "_NET_WM_WINDOW_TYPE_DOCK"));
    setNumber(x11, id, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, everyWorkspace);
    xcb_flush(x11);
}

}  // namespace kestro
