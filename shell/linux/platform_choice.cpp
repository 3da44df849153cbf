#include "shell/linux/platform_choice.h"

#include <QByteArray>
#include <QtGlobal>

#include <xcb/xcb.h>

#include <memory>

namespace kestro {

namespace {

bool answersX11() {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr),
                                                                                  &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

}  // namespace

void choosePlatform() {
    // Any name that no plugin has.
    qputenv("QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none");
    qputenv("QT_WAYLAND_DISABLE_HW_INTEGRATION", "1");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("DISPLAY") && answersX11()) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
}

}  // namespace kestro
