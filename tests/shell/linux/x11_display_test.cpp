#include "shell/linux/x11_display.h"

#include <gtest/gtest.h>
#include <xcb/screensaver.h>
#include <xcb/shape.h>

namespace kestro {
namespace {

TEST(X11Display, ALostConnectionHasNoExtensionsAndNoAtoms) {
    xcb_connection_t* const lost = xcb_connect_to_fd(-1, nullptr);
    ASSERT_NE(xcb_connection_has_error(lost), 0);

    EXPECT_FALSE(x11_display::hasExtension(lost, xcb_shape_id));
    EXPECT_FALSE(x11_display::hasExtension(lost, xcb_screensaver_id));
    EXPECT_EQ(x11_display::atom(lost, "_NET_WM_STATE"), xcb_atom_t{XCB_ATOM_NONE});

    xcb_disconnect(lost);
}

TEST(X11Display, OtherWindowSystemsHaveNoConnection) {
    EXPECT_EQ(x11_display::connection(), nullptr);
}

}  // namespace
}  // namespace kestro
