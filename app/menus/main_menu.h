#pragma once

#include "ui/kestro_services.h"
#include "ui/menus/menu_entry.h"

namespace kestro {

/// What the main menu asks of the application itself. Main thread.
class MenuCommands {
public:
    virtual ~MenuCommands() = default;

    virtual void togglePopover() = 0;
    virtual void toggleDashboard() = 0;
    virtual void toggleFullScreenAction() = 0;
    virtual void showSettings() = 0;
    virtual void togglePin() = 0;
    virtual void quit() = 0;
};

/// The menu of the main item in the current state. Both references outlive it.
Menu mainMenu(const KestroServices& services, MenuCommands& commands);

}  // namespace kestro
