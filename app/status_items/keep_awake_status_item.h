#pragma once

#include "app/status_items/dedicated_status_item.h"

namespace kestro {

class KeepAwakeManager;
class PowerStatus;
class UserSettings;
struct Platform;

/// The optional item with a coffee cup, filled while keep-awake is active and held, the minutes left, and a menu
/// that controls keep-awake. Its help names who holds the lock, or why no service does.
class KeepAwakeStatusItem final : public DedicatedStatusItem {
public:
    KeepAwakeStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings,
                        KeepAwakeManager& manager, const PowerStatus& status);

protected:
    StatusContent content() const override;
    Menu menu() override;

private:
    KeepAwakeManager& manager_;
    const PowerStatus& status_;
};

}  // namespace kestro
