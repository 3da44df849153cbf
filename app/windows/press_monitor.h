#pragma once

#include <functional>
#include <memory>

namespace kestro {

/// Reports every press of a mouse button on the screen as long as it lives, whichever window receives it: a
/// press on the desktop or on a panel does not move the keyboard focus and would otherwise go unnoticed. Uses
/// raw events of the X Input Extension 2; reports nothing on other window systems. Main thread.
class PressMonitor {
public:
    explicit PressMonitor(std::function<void()> onPress);
    ~PressMonitor();
    PressMonitor(const PressMonitor&) = delete;
    PressMonitor& operator=(const PressMonitor&) = delete;

private:
    class Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace kestro
