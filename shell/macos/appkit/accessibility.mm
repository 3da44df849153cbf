#include "shell/macos/native_accessibility.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace kestro {

namespace {

class OptionsWatch final : public NativeWatch {
public:
    /// By value: a block does not keep what a reference refers to.
    explicit OptionsWatch(std::function<void()> handler)
        : center_(NSWorkspace.sharedWorkspace.notificationCenter),
          observer_([center_
              addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                          object:nil
                           queue:NSOperationQueue.mainQueue
                      usingBlock:^(NSNotification*) {
                          const auto call = handler;  // it may end the watch
                          call();
                      }]) {}
    ~OptionsWatch() override { [center_ removeObserver:observer_]; }
    OptionsWatch(const OptionsWatch&) = delete;
    OptionsWatch& operator=(const OptionsWatch&) = delete;

private:
    NSNotificationCenter* const center_;
    id const observer_;
};

class AppKitAccessibility final : public NativeAccessibility {
public:
    AccessibilityDisplayOptions options() const override {
        NSWorkspace* const workspace = NSWorkspace.sharedWorkspace;
        return {.increasesContrast = workspace.accessibilityDisplayShouldIncreaseContrast == YES,
                .reducesMotion = workspace.accessibilityDisplayShouldReduceMotion == YES};
    }

    std::unique_ptr<NativeWatch> watch(std::function<void()> handler) override {
        return std::make_unique<OptionsWatch>(std::move(handler));
    }
};

}  // namespace

std::unique_ptr<NativeAccessibility> makeNativeAccessibility() {
    return std::make_unique<AppKitAccessibility>();
}

}  // namespace kestro
