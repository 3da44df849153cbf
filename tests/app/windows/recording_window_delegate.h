#pragma once

#include "app/windows/window_delegate.h"

#include <string>
#include <utility>
#include <vector>

namespace kestro::test {

/// Records the events of windows.
class RecordingWindowDelegate : public WindowDelegate {
public:
    void popoverDidShow() override { events.emplace_back("popoverDidShow"); }
    void popoverDidClose() override { events.emplace_back("popoverDidClose"); }
    void windowVisibilityDidChange(QWidget&) override { events.emplace_back("visibility"); }
    bool windowShouldClose(QWidget&) override {
        events.emplace_back("shouldClose");
        return allowsClosing;
    }
    void windowDidResize(QWidget&) override { events.emplace_back("didResize"); }
    void windowWillEnterFullScreen(QWidget&) override { events.emplace_back("willEnterFullScreen"); }
    void windowDidExitFullScreen(QWidget&) override { events.emplace_back("didExitFullScreen"); }

    std::vector<std::string> taken() { return std::exchange(events, {}); }

    bool allowsClosing = true;
    std::vector<std::string> events;
};

}  // namespace kestro::test
