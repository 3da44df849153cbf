#include "platform/macos/mac_power_events.h"

#include "core/base/subscription.h"

#include <IOKit/ps/IOPowerSources.h>

#include <utility>

namespace kestro {

namespace {

class Watch final : public PowerEventSource {
public:
    explicit Watch(Subscription subscription) : subscription_(std::move(subscription)) {}

private:
    const Subscription subscription_;
};

}  // namespace

MacPowerEvents::~MacPowerEvents() {
    if (source_) {
        CFRunLoopSourceInvalidate(source_.get());
    }
}

std::unique_ptr<PowerEventSource> MacPowerEvents::watch(std::function<void()> handler) {
    if (!source_) {
        source_.reset(IOPSNotificationCreateRunLoopSource(&changed, this));
        if (!source_) {
            return nullptr;
        }
        CFRunLoopAddSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
    }
    return std::make_unique<Watch>(changes_.subscribe(std::move(handler)));
}

void MacPowerEvents::changed(void* self) {
    static_cast<MacPowerEvents*>(self)->changes_.announce();
}

}  // namespace kestro
