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
    if (connection != nullptr && x11_display::hasExtension(connection, xcb_screensaver_id)) {
        versionRequest_ = xcb_screensaver_query_version(connection, major, minor).sequence;
        xcb_flush(connection);
    }
}

bool X11ScreenSaver::suspend(bool suspended) {
    auto* const connection = x11_display::connection();
    if (connection == nullptr || !isSupported(*connection)) {
        return false;
    }
    xcb_screensaver_suspend(connection, suspended ? 1 : 0);
    xcb_flush(connection);
    return true;
}

bool X11ScreenSaver::isSupported(xcb_connection_t& connection) {
    if (const auto request = std::exchange(versionRequest_, std::nullopt)) {
        const x11_display::Reply<xcb_screensaver_query_version_reply_t> reply(
            xcb_screensaver_query_version_reply(&connection, {*request}, nullptr));
        isSupported_ = reply && reply->server_major_version == major && reply->server_minor_version >= minor;
    }
    return isSupported_;
}

}  // namespace kestro
