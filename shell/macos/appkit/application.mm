#include "shell/macos/native_application.h"

#import <AppKit/AppKit.h>

#include <cstdint>
#include <optional>
#include <utility>

/// Receives Apple events of one kind. It reports no error, so the sender takes them as accepted.
@interface KestroAppleEventTarget : NSObject {
@public
    std::function<void()> onEvent;
}
@end

@implementation KestroAppleEventTarget

- (void)handle:(NSAppleEventDescriptor*)__unused event withReplyEvent:(NSAppleEventDescriptor*)__unused reply {
    onEvent();
}

@end

namespace kestro {

namespace {

// kCoreEventClass, kAEReopenApplication and kAEQuitApplication, as CoreServices has them.
constexpr std::uint32_t coreEventClass = 0x61657674;     // aevt
constexpr std::uint32_t reopenApplication = 0x72617070;  // rapp
constexpr std::uint32_t quitApplication = 0x71756974;    // quit

/// Handles the Apple events of one kind in place of whoever does so.
class AppleEventHandler final {
public:
    AppleEventHandler(std::uint32_t event, std::function<void()> handler) : event_(event) {
        target_->onEvent = std::move(handler);
        [NSAppleEventManager.sharedAppleEventManager setEventHandler:target_
                                                         andSelector:@selector(handle:withReplyEvent:)
                                                       forEventClass:coreEventClass
                                                          andEventID:event];
    }
    ~AppleEventHandler() {
        [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:coreEventClass
                                                                          andEventID:event_];
    }
    AppleEventHandler(const AppleEventHandler&) = delete;
    AppleEventHandler& operator=(const AppleEventHandler&) = delete;

private:
    std::uint32_t event_;
    KestroAppleEventTarget* target_ = [[KestroAppleEventTarget alloc] init];
};

/// The monitors of the presses in other applications and in this one.
class PressWatch final : public NativeWatch {
public:
    /// The function is copied by both blocks; they would not keep what a reference refers to.
    explicit PressWatch(std::function<void()> onPress) {
        const NSEventMask presses =
            NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown | NSEventMaskOtherMouseDown;
        elsewhere_ = [NSEvent addGlobalMonitorForEventsMatchingMask:presses
                                                            handler:^(NSEvent*) {
                                                                const auto handler = onPress;  // it may end the watch
                                                                handler();
                                                            }];
        here_ = [NSEvent addLocalMonitorForEventsMatchingMask:presses
                                                      handler:^NSEvent*(NSEvent* event) {
                                                          const auto handler = onPress;
                                                          handler();
                                                          return event;
                                                      }];
    }
    ~PressWatch() override {
        remove(elsewhere_);
        remove(here_);
    }
    PressWatch(const PressWatch&) = delete;
    PressWatch& operator=(const PressWatch&) = delete;

    bool isRunning() const { return elsewhere_ != nil && here_ != nil; }

private:
    static void remove(id monitor) {
        if (monitor != nil) {
            [NSEvent removeMonitor:monitor];
        }
    }

    id elsewhere_ = nil;
    id here_ = nil;
};

class AppKitApplication final : public NativeApplication {
public:
    AppKitApplication() = default;
    ~AppKitApplication() override {
        if (activity_ != nil) {
            [NSProcessInfo.processInfo endActivity:activity_];
        }
    }
    AppKitApplication(const AppKitApplication&) = delete;
    AppKitApplication& operator=(const AppKitApplication&) = delete;

    void becomeAccessory() override { [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory]; }

    void preventAppNap() override {
        activity_ = [NSProcessInfo.processInfo
            beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                              reason:@"Readings in the menu bar"];
    }

    void activate() override { [NSApp activateIgnoringOtherApps:YES]; }

    void handleEvents(std::function<void()> onReopen, std::function<void()> onQuit) override {
        reopening_.emplace(reopenApplication, std::move(onReopen));
        quitting_.emplace(quitApplication, std::move(onQuit));
    }

    std::unique_ptr<NativeWatch> watchPresses(std::function<void()> onPress) override {
        auto watch = std::make_unique<PressWatch>(std::move(onPress));
        return watch->isRunning() ? std::move(watch) : nullptr;
    }

private:
    id<NSObject> activity_ = nil;
    std::optional<AppleEventHandler> reopening_;
    std::optional<AppleEventHandler> quitting_;
};

}  // namespace

std::unique_ptr<NativeApplication> makeNativeApplication() {
    return std::make_unique<AppKitApplication>();
}

}  // namespace kestro
