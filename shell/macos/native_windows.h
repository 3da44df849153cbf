#pragma once

#include <cstdint>
#include <memory>

namespace kestro {

/// An NSView, as QWindow::winId() returns it.
using NativeView = std::uintptr_t;

/// How an NSWindow looks and behaves, in AppKit's values.
struct NativeWindowStyle {
    std::uint64_t styleMask = 0;
    std::uint64_t collectionBehavior = 0;
    std::int64_t animationBehavior = 0;

    friend bool operator==(const NativeWindowStyle&, const NativeWindowStyle&) = default;
};

/// The NSWindows behind the toolkit's. Main thread. Ignores views without a window.
class NativeWindows {
public:
    virtual ~NativeWindows() = default;

    /// Makes it a window with a transparent title bar that shows neither title nor buttons, over the whole of
    /// which the content extends. A window in full screen stays there.
    virtual void dress(NativeView view, const NativeWindowStyle& style) = 0;

    virtual void setLevel(NativeView view, std::int64_t level) = 0;

    /// Sets the behaviour of a window that comes and goes with the status item, and lets it stay while another
    /// application is active.
    virtual void dressPopover(NativeView view, std::uint64_t collectionBehavior) = 0;

    /// Puts a window directly above another one, without a change of the keyboard focus.
    virtual void orderAbove(NativeView view, NativeView other) = 0;
};

std::unique_ptr<NativeWindows> makeNativeWindows();

}  // namespace kestro
