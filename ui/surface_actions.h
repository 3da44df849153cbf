#pragma once

#include <functional>

namespace kestro {

/// What the views request from the application. Each action runs on the main thread, from a control's click; it
/// may hide the view before it returns.

struct PopoverActions {
    std::function<void()> onOpenDashboard;
    std::function<void()> onOpenSettings;
    std::function<void()> onQuit;
};

struct DashboardActions {
    std::function<void()> onOpenSettings;
    std::function<void()> onToggleFullScreen;  ///< the windowed zoom, not the system's full screen
    std::function<void()> onClose;
};

struct SettingsActions {
    std::function<void()> onClose;
};

}  // namespace kestro
