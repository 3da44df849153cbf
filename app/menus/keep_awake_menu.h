#pragma once

#include "ui/menus/menu_entry.h"

#include <functional>

namespace kestro {

class KeepAwakeManager;

/// The menu of the keep-awake item in the current state. `keepAwake` outlives it.
Menu keepAwakeMenu(KeepAwakeManager& keepAwake, std::function<void()> openSettings);

}  // namespace kestro
