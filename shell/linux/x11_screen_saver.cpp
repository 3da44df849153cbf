#include "shell/linux/x11_screen_saver.h"

#include "shell/linux/x11_display.h"

#include <xcb/screensaver.h>

#include <cstdint>
#include <utility>

namespace kestro {

namespace {

constexpr std::uint8_t major = 1;
constexpr std::uint8_t minor = 1;

}  // namespace

X11ScreenSaver::X11ScreenSaver() {
    auto* const connection = x11_display::connection();
    if (connection == nullptr) {
        return;
    }
    const auto* const extension = xcb_get_extension_data(connection, &xcb_screensaver_id);
    if (extension != nullptr && extension->present != 0) {
        versionRequest_ = xcb_screensaver_query_version(connection, major, minor).sequence;
        xcb_flush(connection);
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
    if (const auto request = std::exchange(versionRequest_, std::nullopt)) {
        const x11_display::Reply<xcb_screensaver_query_version_reply_t> reply(
            xcb_screensaver_query_version_reply(x11_display::connection(), {*request}, nullptr));
        isSupported_ = reply && reply->server_major_version == major && reply->server_minor_version >= minor;
    }
    return isSupported_;
}

}  // namespace kestro
