#pragma once

#include "core/base/announcer.h"
#include "core/platform/distributed_notifications.h"
#include "core/platform/run_loop.h"
#include "platform/simulated/simulated_failure.h"

#include <map>
#include <memory>
#include <vector>

namespace kestro {

/// One posted notification.
struct SimulatedPosting {
    std::string name;
    NotificationUserInfo userInfo;
};

/// Delivers every notification to the observers of its name, as a task on the main queue, and records it.
class SimulatedDistributedNotifications final : public DistributedNotifications {
public:
    explicit SimulatedDistributedNotifications(RunLoop& runLoop) : runLoop_(runLoop) {}

    Subscription observe(std::string_view name, Handler handler) override {
        return observers(name)->subscribe(std::move(handler));
    }

    void post(std::string_view name, const NotificationUserInfo& userInfo) override {
        postings.push_back({std::string(name), userInfo});
        if (loss.strikes()) {
            return;
        }
        runLoop_.post([observers = observers(name), userInfo] {
            observers->announceWith([&userInfo](const Handler& handler) { handler(userInfo); });
        });
    }

    SimulatedFailure loss;  ///< drops a posted notification
    std::vector<SimulatedPosting> postings;

private:
    using Observers = Announcer<const NotificationUserInfo&>;

    std::shared_ptr<Observers> observers(std::string_view name) {
        auto& list = observersByName_[std::string(name)];
        if (!list) {
            list = std::make_shared<Observers>();
        }
        return list;
    }

    RunLoop& runLoop_;
    std::map<std::string, std::shared_ptr<Observers>> observersByName_;
};

}  // namespace kestro
