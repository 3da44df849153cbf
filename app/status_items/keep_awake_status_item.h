#pragma once

#include "app/menus/keep_awake_menu.h"
#include "app/status_items/dedicated_status_item.h"

namespace kestro {

class KeepAwakeManager;
class UserSettings;
struct Platform;

/// The optional item with a coffee cup, filled while keep-awake is active, the minutes left, and a menu that
/// controls keep-awake.
class KeepAwakeStatusItem final : public DedicatedStatusItem, private KeepAwakeMenuActions {
public:
    KeepAwakeStatusItem(const Platform& platform, StatusBar& statusBar, UserSettings& settings,
                        KeepAwakeManager& manager);

protected:
    StatusContent content() const override;
    StatusMenu menu() override;

private:
    void toggleAction() override;
    void selectDuration(KeepAwakeDuration duration) override;
    void selectTarget(KeepAwakeTarget target) override;
    void openSettingsAction() override;

    const Platform& platform_;
    UserSettings& settings_;
    KeepAwakeManager& manager_;
};

}  // namespace kestro
