#include "shell/linux/x11_display.h"

#include <QGuiApplication>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace kestro::x11_display {

xcb_connection_t* connection() {
    const auto* const application =
        qGuiApp != nullptr ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t* const connection = application != nullptr ? application->connection() : nullptr;
    return connection != nullptr && xcb_connection_has_error(connection) == 0 ? connection : nullptr;
}

xcb_window_t root(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

bool hasExtension(xcb_connection_t* connection, xcb_extension_t& extension) {
    const auto* const found = xcb_get_extension_data(connection, &extension);
    return found != nullptr && found->present != 0;
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name, AtomCreation creation) {
    static std::map<std::string, xcb_atom_t, std::less<>> found;
    if (const auto known = found.find(name); known != found.end()) {
        return known->second;
    }
    const std::uint8_t onlyIfKnown = creation == AtomCreation::onlyIfKnown ? 1 : 0;
    const auto cookie =
        xcb_intern_atom(connection, onlyIfKnown, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    if (!reply || reply->atom == XCB_ATOM_NONE) {
        return XCB_ATOM_NONE;
    }
    return found.emplace(name, reply->atom).first->second;
}

}  // namespace kestro::x11_display
