#include "shell/linux/x11_screen_saver.h"

#include "shell/linux/x11_display.h"

#include <xcb/screensaver.h>

#include <cstdint>

namespace kestro {

X11ScreenSaver::X11ScreenSaver() {
    if (auto* const connection = x11_display::connection()) {
        xcb_prefetch_extension_data(connection, &xcb_screensaver_id);
    }
}

bool X11ScreenSaver::suspend(bool suspended) {
    if (!isSupported()) {
        return false;
    }
    auto* const connection = x11_display::connection();
    xcb_screensaver_suspend(connection, suspended ? 1 : 0);
    xcb_flush(connection);
    return true;
}

bool X11ScreenSaver::isSupported() {
    constexpr std::uint8_t major = 1;
    constexpr std::uint8_t minor = 1;
    auto* const connection = x11_display::connection();
    if (connection == nullptr) {
        return false;
    }
    if (!isSupported_) {
        const auto* const extension = xcb_get_extension_data(connection, &xcb_screensaver_id);
        isSupported_ = false;
        if (extension != nullptr && extension->present != 0) {
            const auto cookie = xcb_screensaver_query_version(connection, major, minor);
            const x11_display::Reply<xcb_screensaver_query_version_reply_t> reply(
                xcb_screensaver_query_version_reply(connection, cookie, nullptr));
            isSupported_ = reply && reply->server_major_version == major && reply->server_minor_version >= minor;
        }
    }
    return *isSupported_;
}

}  // namespace kestro
