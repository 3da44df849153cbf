#pragma once

#include <functional>
#include <memory>

namespace kestro {

/// Something that is being watched; destroying it ends the watch.
class NativeWatch {
public:
    virtual ~NativeWatch() = default;
};

/// The NSApplication. Main thread, after the toolkit's application object.
class NativeApplication {
public:
    virtual ~NativeApplication() = default;

    /// Removes the application from the Dock and from the application switcher, also where no bundle says so.
    virtual void becomeAccessory() = 0;

    /// Exempts the application from App Nap, so that its timers are not delayed while no window is visible. The
    /// system may still go to sleep.
    virtual void preventAppNap() = 0;

    /// Makes it the active application, whatever the user is working in.
    virtual void activate() = 0;

    /// Calls `onReopen` whenever the user opens the running application again, and `onQuit` whenever the system or
    /// another program asks it to quit, at logout for example. Replaces the system's own handling, so call it
    /// while the event loop runs.
    virtual void handleEvents(std::function<void()> onReopen, std::function<void()> onQuit) = 0;

    /// Calls `onPress` for every press of a mouse button, in whichever application. Null: the system refuses.
    [[nodiscard]] virtual std::unique_ptr<NativeWatch> watchPresses(std::function<void()> onPress) = 0;
};

std::unique_ptr<NativeApplication> makeNativeApplication();

}  // namespace kestro
