#pragma once

#include "app/status_items/dedicated_status_item.h"

namespace kestro {

class KeepAwakeManager;
class UserSettings;
struct Platform;

/// The optional item with a coffee cup, filled while keep-awake is active, the minutes left, and a menu that
/// controls keep-awake.
class KeepAwakeStatusItem final : public DedicatedStatusItem {
public:
    KeepAwakeStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings,
                        KeepAwakeManager& manager);

protected:
    StatusContent content() const override;
    Menu menu() override;

private:
    KeepAwakeManager& manager_;
};

}  // namespace kestro
