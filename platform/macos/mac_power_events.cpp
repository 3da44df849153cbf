#include "platform/macos/mac_power_events.h"

#include "platform/macos/owned.h"

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/ps/IOPowerSources.h>

#include <utility>

namespace kestro {

namespace {

class Watch final : public PowerEventSource {
public:
    explicit Watch(std::function<void()> handler)
        : handler_(std::move(handler)), source_(IOPSNotificationCreateRunLoopSource(&changed, this)) {
        if (source_) {
            CFRunLoopAddSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
        }
    }
    ~Watch() override {
        if (source_) {
            CFRunLoopSourceInvalidate(source_.get());
        }
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    bool isRunning() const { return static_cast<bool>(source_); }

private:
    static void changed(void* self) {
        const auto handler = static_cast<const Watch*>(self)->handler_;  // it may end the watch
        handler();
    }

    const std::function<void()> handler_;
    CFOwned<CFRunLoopSourceRef> source_;
};

}  // namespace

std::unique_ptr<PowerEventSource> MacPowerEvents::watch(std::function<void()> handler) {
    auto watch = std::make_unique<Watch>(std::move(handler));
    if (!watch->isRunning()) {
        return nullptr;
    }
    return watch;
}

}  // namespace kestro
