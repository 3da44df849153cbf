#include "platform/macos/mac_distributed_notifications.h"

#include "platform/macos/cf_values.h"

#include <type_traits>
#include <utility>
#include <vector>

namespace kestro {

namespace {

/// What a notification carries, as far as it has textual keys.
NotificationUserInfo userInfoOf(CFDictionaryRef dictionary) {
    NotificationUserInfo userInfo;
    const CFIndex count = dictionary == nullptr ? 0 : CFDictionaryGetCount(dictionary);
    std::vector<const void*> keys(static_cast<std::size_t>(count));
    std::vector<const void*> values(keys.size());
    if (count > 0) {
        CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    }
    for (std::size_t index = 0; index < keys.size(); ++index) {
        const auto key = textOf(keys[index]);
        if (!key) {
            continue;
        }
        NotificationValue& value = userInfo[*key];
        const CFValue stored = valueOf(values[index]);
        if (const auto* flag = std::get_if<bool>(&stored)) {
            value = *flag;
        } else if (const auto* integer = std::get_if<std::int64_t>(&stored)) {
            value = static_cast<double>(*integer);
        } else if (const auto* number = std::get_if<double>(&stored)) {
            value = *number;
        } else if (const auto* text = std::get_if<std::string>(&stored)) {
            value = *text;
        }
    }
    return userInfo;
}

CFOwned<CFDictionaryRef> dictionaryOf(const NotificationUserInfo& userInfo) {
    std::vector<CFOwned<CFTypeRef>> objects;
    std::vector<CFTypeRef> keys;
    std::vector<CFTypeRef> values;
    for (const auto& [key, value] : userInfo) {
        CFOwned<CFTypeRef> name(makeString(key).take());
        CFOwned<CFTypeRef> object = std::visit([](const auto& kind) { return makeObject(CFValue(kind)); }, value);
        if (name && object) {
            keys.push_back(name.get());
            values.push_back(object.get());
            objects.push_back(std::move(name));
            objects.push_back(std::move(object));
        }
    }
    return makeDictionary(keys, values);
}

}  // namespace

MacDistributedNotifications::~MacDistributedNotifications() {
    if (center_ != nullptr) {
        CFNotificationCenterRemoveEveryObserver(center_, this);
    }
}

Subscription MacDistributedNotifications::observe(std::string_view name, Handler handler) {
    auto found = observersByName_.find(name);
    if (found == observersByName_.end()) {
        found = observersByName_.emplace(name, std::make_shared<Observers>()).first;
        const auto text = makeString(name);
        if (center_ != nullptr && text) {
            CFNotificationCenterAddObserver(center_, this, &received, text.get(), nullptr,
                                            CFNotificationSuspensionBehaviorDeliverImmediately);
        }
    }
    return found->second->subscribe(std::move(handler));
}

void MacDistributedNotifications::post(std::string_view name, const NotificationUserInfo& userInfo) {
    const auto text = makeString(name);
    if (center_ == nullptr || !text) {
        return;
    }
    const auto dictionary = userInfo.empty() ? CFOwned<CFDictionaryRef>() : dictionaryOf(userInfo);
    CFNotificationCenterPostNotification(center_, text.get(), nullptr, dictionary.get(), true);
}

void MacDistributedNotifications::received(CFNotificationCenterRef, void* self, CFStringRef name, const void*,
                                           CFDictionaryRef userInfo) {
    auto& notifications = *static_cast<MacDistributedNotifications*>(self);
    const auto text = textOf(name);
    const auto found = text ? notifications.observersByName_.find(*text) : notifications.observersByName_.end();
    if (found == notifications.observersByName_.end()) {
        return;
    }
    notifications.runLoop_.post([observers = found->second, values = userInfoOf(userInfo)] {
        observers->announceWith([&values](const Handler& handler) { handler(values); });
    });
}

}  // namespace kestro
