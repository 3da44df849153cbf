#pragma once

#include <xcb/xcb.h>

#include <optional>

namespace kestro {

/// The X server's own timers, which blank the screen and put the monitor to sleep whatever the session's services
/// hold. Suspending stops both: the server runs them on one timer. The server resumes it when our connection ends.
/// Main thread, after the application object.
class X11ScreenSaver {
public:
    /// Asks the server for the version of its screen saver extension, at the cost of one round trip.
    X11ScreenSaver();

    /// Suspends the timers, or resumes them; the server counts, so calls nest. False: there is no X server, it is
    /// lost, or its extension is older than version 1.1. Does not wait for the server, unless it is called right
    /// after the start.
    bool suspend(bool suspended);

private:
    bool isSupported(xcb_connection_t& connection);

    std::optional<unsigned> versionRequest_;  // sequence number, until the reply is read
    bool isSupported_ = false;
};

}  // namespace kestro
