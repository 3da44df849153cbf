#pragma once

#include <functional>

namespace kestro {

/// What the views ask of the application. Each is called on the main thread, from a control's click; the
/// view must be prepared to be hidden before the call returns.

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
