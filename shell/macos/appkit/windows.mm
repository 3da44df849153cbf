#include "shell/macos/native_windows.h"
#include "shell/macos/window_style.h"

#import <AppKit/AppKit.h>

#include <initializer_list>

namespace kestro {

namespace {

using namespace window_style;

static_assert(NSWindowStyleMaskTitled == titled && NSWindowStyleMaskClosable == closable &&
              NSWindowStyleMaskMiniaturizable == miniaturizable && NSWindowStyleMaskResizable == resizable &&
              NSWindowStyleMaskFullSizeContentView == fullSizeContentView);
static_assert(NSWindowCollectionBehaviorMoveToActiveSpace == moveToActiveSpace &&
              NSWindowCollectionBehaviorManaged == managed && NSWindowCollectionBehaviorTransient == transient &&
              NSWindowCollectionBehaviorIgnoresCycle == ignoresCycle &&
              NSWindowCollectionBehaviorFullScreenPrimary == fullScreenPrimary &&
              NSWindowCollectionBehaviorFullScreenAuxiliary == fullScreenAuxiliary);
static_assert(NSWindowAnimationBehaviorUtilityWindow == utilityWindow);

NSWindow* windowOf(NativeView view) {
    return ((__bridge NSView*)reinterpret_cast<void*>(view)).window;
}

/// AppKit builds a new frame for another mask. Meanwhile the content has no size, which the toolkit must not see; the
/// content can also lose the keyboard.
void setStyleMask(NSWindow* window, NSWindowStyleMask mask) {
    if (window.styleMask != mask) {
        NSResponder* const focus = window.firstResponder;
        window.contentView.postsFrameChangedNotifications = NO;
        window.styleMask = mask;
        window.contentView.postsFrameChangedNotifications = YES;
        [window makeFirstResponder:focus];
    }
}

void dressWindow(NSWindow* window, const NativeWindowStyle& style) {
    setStyleMask(window, style.styleMask | (window.styleMask & NSWindowStyleMaskFullScreen));
    window.titlebarAppearsTransparent = YES;
    window.titleVisibility = NSWindowTitleHidden;
    // The content has its own. The toolkit shows hidden ones again.
    for (const NSWindowButton button : {NSWindowCloseButton, NSWindowMiniaturizeButton, NSWindowZoomButton}) {
        [[window standardWindowButton:button] removeFromSuperview];
    }
    // The content starts a drag of the window itself: to AppKit, the toolkit's single view is all background.
    window.movableByWindowBackground = NO;
    window.opaque = NO;
    window.backgroundColor = NSColor.clearColor;
    window.hasShadow = YES;
    window.collectionBehavior = style.collectionBehavior;
    window.animationBehavior = static_cast<NSWindowAnimationBehavior>(style.animationBehavior);
}

class AppKitWindows final : public NativeWindows {
public:
    void dress(NativeView view, const NativeWindowStyle& style) override {
        // A new frame leaves the window in the pool, and before the event loop runs there is none.
        @autoreleasepool {
            dressWindow(windowOf(view), style);
        }
    }

    void setLevel(NativeView view, std::int64_t level) override {
        windowOf(view).level = static_cast<NSWindowLevel>(level);
    }

    void dressPopover(NativeView view, std::uint64_t collectionBehavior) override {
        NSWindow* const window = windowOf(view);
        window.collectionBehavior = collectionBehavior;
        // The toolkit's attribute for it would also reset the levels of floating windows whenever the application
        // becomes active or inactive.
        window.hidesOnDeactivate = NO;
    }

    void orderAbove(NativeView view, NativeView other) override {
        NSWindow* const below = windowOf(other);
        if (below != nil) {
            [windowOf(view) orderWindow:NSWindowAbove relativeTo:below.windowNumber];
        }
    }
};

}  // namespace

std::unique_ptr<NativeWindows> makeNativeWindows() {
    return std::make_unique<AppKitWindows>();
}

}  // namespace kestro
