#pragma once

#include "core/base/subscription.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace kestro {

/// A user-info value; kinds other than text, boolean and number cross the port as monostate.
using NotificationValue = std::variant<std::monostate, bool, double, std::string>;
using NotificationUserInfo = std::map<std::string, NotificationValue, std::less<>>;

/// The user's distributed notification centre. Any process of the user can post, so do not trust the contents.
/// Main thread.
class DistributedNotifications {
public:
    using Handler = std::function<void(const NotificationUserInfo&)>;

    virtual ~DistributedNotifications() = default;

    /// Calls `handler` on the main thread for every post of `name`, from any process including this one, until the
    /// returned object is destroyed.
    virtual Subscription observe(std::string_view name, Handler handler) = 0;

    /// Posts with no sender object. Fails silently when delivery is impossible.
    virtual void post(std::string_view name, const NotificationUserInfo& userInfo = {}) = 0;
};

}  // namespace kestro
