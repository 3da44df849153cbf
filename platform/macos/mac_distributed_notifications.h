#pragma once

#include "core/base/announcer.h"
#include "core/platform/distributed_notifications.h"
#include "core/platform/run_loop.h"

#include <CoreFoundation/CoreFoundation.h>

#include <map>
#include <memory>
#include <string>

namespace kestro {

/// The distributed notification centre, which delivers while the main run loop runs. Main thread; the run loop
/// outlives this object. Handlers run as tasks of the run loop, so one may run a nested loop and still receive
/// notifications.
class MacDistributedNotifications final : public DistributedNotifications {
public:
    explicit MacDistributedNotifications(RunLoop& runLoop) : runLoop_(runLoop) {}

    /// Ends the delivery of every name.
    ~MacDistributedNotifications() override;
    MacDistributedNotifications(const MacDistributedNotifications&) = delete;
    MacDistributedNotifications& operator=(const MacDistributedNotifications&) = delete;

    Subscription observe(std::string_view name, Handler handler) override;
    void post(std::string_view name, const NotificationUserInfo& userInfo) override;

private:
    using Observers = Announcer<const NotificationUserInfo&>;

    static void received(CFNotificationCenterRef center, void* self, CFStringRef name, const void* object,
                         CFDictionaryRef userInfo);

    RunLoop& runLoop_;
    const CFNotificationCenterRef center_ = CFNotificationCenterGetDistributedCenter();  ///< null: there is none
    std::map<std::string, std::shared_ptr<Observers>, std::less<>> observersByName_;     ///< of registered names
};

}  // namespace kestro
