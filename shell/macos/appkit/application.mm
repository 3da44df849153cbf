#include "shell/macos/native_application.h"

#import <AppKit/AppKit.h>

#include <cstdint>
#include <utility>

/// Receives the Apple event that the system sends when the user opens the running application again.
@interface KestroReopenTarget : NSObject {
@public
    std::function<void()> onReopen;
}
@end

@implementation KestroReopenTarget

- (void)reopen:(NSAppleEventDescriptor*)__unused event withReplyEvent:(NSAppleEventDescriptor*)__unused reply {
    onReopen();
}

@end

namespace kestro {

namespace {

// kCoreEventClass and kAEReopenApplication, as CoreServices has them.
constexpr std::uint32_t coreEventClass = 0x61657674;     // aevt
constexpr std::uint32_t reopenApplication = 0x72617070;  // rapp

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
        if (reopening_ != nil) {
            [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:coreEventClass
                                                                              andEventID:reopenApplication];
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

    void setReopenHandler(std::function<void()> handler) override {
        reopening_ = [[KestroReopenTarget alloc] init];
        reopening_->onReopen = std::move(handler);
        [NSAppleEventManager.sharedAppleEventManager setEventHandler:reopening_
                                                         andSelector:@selector(reopen:withReplyEvent:)
                                                       forEventClass:coreEventClass
                                                          andEventID:reopenApplication];
    }

    std::unique_ptr<NativeWatch> watchPresses(std::function<void()> onPress) override {
        auto watch = std::make_unique<PressWatch>(std::move(onPress));
        return watch->isRunning() ? std::move(watch) : nullptr;
    }

private:
    id<NSObject> activity_ = nil;
    KestroReopenTarget* reopening_ = nil;
};

}  // namespace

std::unique_ptr<NativeApplication> makeNativeApplication() {
    return std::make_unique<AppKitApplication>();
}

}  // namespace kestro
