#pragma once

#include <functional>
#include <memory>

namespace kestro {

/// Tells of every press of a mouse button on the screen as long as it lives, whichever window it goes to: a
/// press on the desktop or on a panel does not move the keyboard's focus, and would go unnoticed. By raw
/// events of the X Input Extension 2; on other window systems it stays silent. Main thread.
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
