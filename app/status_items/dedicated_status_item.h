#pragma once

#include "app/base/coalesced_task.h"
#include "app/status_bar/status_bar.h"
#include "core/base/subscription.h"

#include <QString>

#include <memory>
#include <vector>

namespace kestro {

class RunLoop;
template <typename T>
class Setting;

/// An extra item of the status bar that stands there while its setting is on, and opens its menu on either
/// click. The object itself lives for the process. Main thread.
class DedicatedStatusItem {
public:
    virtual ~DedicatedStatusItem() = default;
    DedicatedStatusItem(const DedicatedStatusItem&) = delete;
    DedicatedStatusItem& operator=(const DedicatedStatusItem&) = delete;

    /// Puts the item into the status bar; does nothing when it is there.
    void enable();

    /// Takes the item out of the status bar.
    void disable();

    /// Shows the present state; does nothing while there is no item.
    void updateIcon();

    void showMenu();

    bool isEnabled() const { return statusItem_ != nullptr; }

protected:
    /// `isShown` decides whether the item stands in the bar. All references outlive this object.
    DedicatedStatusItem(const QString& identifier, StatusBar& statusBar, RunLoop& runLoop,
                        const Setting<bool>& isShown);

    virtual StatusContent content() const = 0;

    /// Built anew at every opening.
    virtual StatusMenu menu() = 0;

    /// Has the icon follow a published value or a setting, once for each turn of the main queue.
    template <typename Value>
    void follow(const Value& value) {
        subscriptions_.push_back(value.subscribe([this](const auto&) { iconUpdate_.request(); }));
    }

    /// Follows the setting from now on, its present value included. The derived class calls it when it is
    /// complete.
    void observeSettings();

private:
    void followSetting();

    const QString identifier_;
    StatusBar& statusBar_;
    const Setting<bool>& isShown_;
    CoalescedTask iconUpdate_;
    CoalescedTask visibilityUpdate_;
    std::unique_ptr<StatusItem> statusItem_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
