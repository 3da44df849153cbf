#pragma once

#include "app/base/coalesced_task.h"
#include "core/base/subscription.h"
#include "core/model/settings_enumerations.h"
#include "shell/status_bar.h"

#include <QString>

#include <memory>
#include <vector>

namespace kestro {

class UserSettings;
struct Platform;
template <typename T>
class Setting;

/// An extra item in the status bar, present while its setting is on. Either click opens its menu. The object
/// itself lives as long as the process. Main thread.
class DedicatedStatusItem {
public:
    virtual ~DedicatedStatusItem() = default;
    DedicatedStatusItem(const DedicatedStatusItem&) = delete;
    DedicatedStatusItem& operator=(const DedicatedStatusItem&) = delete;

    /// Adds the item to the status bar; does nothing if it is there.
    void enable();

    /// Removes the item from the status bar.
    void disable();

    /// Shows the current state; does nothing while there is no item.
    void updateIcon();

    void showMenu();

    bool isEnabled() const { return statusItem_ != nullptr; }

protected:
    /// `isShown` decides whether the item is in the bar. All references outlive this object.
    DedicatedStatusItem(const QString& identifier, const Platform& platform, StatusBar& statusBar,
                        UserSettings& settings, const Setting<bool>& isShown);

    virtual StatusContent content() const = 0;

    /// Built each time the menu opens.
    virtual Menu menu() = 0;

    /// Updates the icon whenever a published value or a setting changes, once per turn of the main queue.
    template <typename Value>
    void follow(const Value& value) {
        subscriptions_.push_back(value.subscribe([this](const auto&) { iconUpdate_.request(); }));
    }

    /// Asks the application to open the settings at a tab.
    void openSettings(SettingsTab tab);

    /// Applies the setting and follows it from now on. A derived class calls it once it is fully constructed.
    void observeSettings();

private:
    void followSetting();

    const QString identifier_;
    const Platform& platform_;
    StatusBar& statusBar_;
    UserSettings& settings_;
    const Setting<bool>& isShown_;
    CoalescedTask iconUpdate_;
    CoalescedTask visibilityUpdate_;
    std::unique_ptr<StatusItem> statusItem_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
