#pragma once

#include "shell/window_system.h"

namespace kestro {

/// Calls `onPress` for every press of a mouse button, by raw events of the X Input Extension 2 on a connection of
/// its own; null on other window systems and on servers without these events. Main thread.
[[nodiscard]] std::unique_ptr<PressMonitor> watchX11Presses(std::function<void()> onPress);

}  // namespace kestro
