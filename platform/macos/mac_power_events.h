#pragma once

#include "core/base/announcer.h"
#include "core/platform/power_events.h"
#include "platform/macos/owned.h"

#include <CoreFoundation/CoreFoundation.h>

#include <functional>
#include <memory>

namespace kestro {

/// The notifications of IOKit's power sources, which arrive while the main run loop runs. Main thread. IOKit never
/// releases the port behind a source of these notifications, so all watches share one, which the first watch
/// makes.
class MacPowerEvents final : public PowerEvents {
public:
    MacPowerEvents() = default;

    /// Ends every watch.
    ~MacPowerEvents() override;
    MacPowerEvents(const MacPowerEvents&) = delete;
    MacPowerEvents& operator=(const MacPowerEvents&) = delete;

    std::unique_ptr<PowerEventSource> watch(std::function<void()> handler) override;

private:
    static void changed(void* self);

    Announcer<> changes_;
    CFOwned<CFRunLoopSourceRef> source_;
};

}  // namespace kestro
