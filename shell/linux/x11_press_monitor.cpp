#include "shell/linux/x11_press_monitor.h"

#include "shell/linux/x11_display.h"

#include <QSocketNotifier>

#include <xcb/xinput.h>

#include <utility>

namespace kestro {

namespace {

using x11_display::Reply;

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

using Display = std::unique_ptr<xcb_connection_t, Disconnect>;

/// Buttons 4 to 7 are the wheel.
constexpr std::uint32_t lastRealButton = 3;

bool hasRawEvents(xcb_connection_t* display) {
    const auto cookie = xcb_input_xi_query_version(display, 2, 2);
    const Reply<xcb_input_xi_query_version_reply_t> reply(
        xcb_input_xi_query_version_reply(display, cookie, nullptr));
    // Since 2.1, raw events arrive even while another program holds a grab.
    return reply && (reply->major_version > 2 || (reply->major_version == 2 && reply->minor_version >= 1));
}

void selectRawPresses(xcb_connection_t* display) {
    struct {
        xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
    } mask;
    xcb_input_xi_select_events(display, x11_display::root(display), 1, &mask.head);
    xcb_flush(display);
}

/// A connection of our own, so that Qt's does not receive these events.
class X11PressMonitor final : public PressMonitor {
public:
    X11PressMonitor(Display display, std::function<void()> onPress)
        : display_(std::move(display)),
          onPress_(std::move(onPress)),
          notifier_(xcb_get_file_descriptor(display_.get()), QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { readEvents(); });
    }

private:
    void readEvents() {
        bool isPressed = false;
        while (xcb_generic_event_t* event = xcb_poll_for_event(display_.get())) {
            const Reply<xcb_generic_event_t> owned(event);
            isPressed = isPressed || isPress(*event);
        }
        if (xcb_connection_has_error(display_.get()) != 0) {
            notifier_.setEnabled(false);
        }
        if (isPressed) {
            // The callback may destroy this object.
            const auto onPress = onPress_;
            onPress();
        }
    }

    static bool isPress(const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) != XCB_GE_GENERIC) {
            return false;
        }
        const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
        return press.event_type == XCB_INPUT_RAW_BUTTON_PRESS && press.detail <= lastRealButton;
    }

    Display display_;
    std::function<void()> onPress_;
    QSocketNotifier notifier_;
};

}  // namespace

std::unique_ptr<PressMonitor> watchX11Presses(std::function<void()> onPress) {
    if (x11_display::connection() == nullptr) {
        return nullptr;
    }
    Display display(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(display.get()) != 0 || !hasRawEvents(display.get())) {
        return nullptr;
    }
    selectRawPresses(display.get());
    return std::make_unique<X11PressMonitor>(std::move(display), std::move(onPress));
}

}  // namespace kestro
