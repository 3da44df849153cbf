#pragma once

namespace kestro {

class StatusBar;
class WindowSystem;

/// What the application needs from the desktop that it runs on. Both outlive it.
struct Shell {
    StatusBar& statusBar;
    WindowSystem& windowSystem;
};

}  // namespace kestro
