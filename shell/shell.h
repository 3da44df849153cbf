#pragma once

namespace kestro {

class ReadoutService;
class StatusBar;
class WindowSystem;

/// What the application needs from the desktop that it runs on. All of it outlives the application's root object.
struct Shell {
    StatusBar& statusBar;
    WindowSystem& windowSystem;

    /// Null where the readout cannot be offered to other programs.
    ReadoutService* readoutService = nullptr;
};

}  // namespace kestro
