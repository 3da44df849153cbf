#pragma once

#include "ui/menus/menu_entry.h"

#include <functional>

namespace kestro {

class KeepAwakeManager;
class PowerStatus;

/// "Keep-Awake: Active", "Keep-Awake: Not Held" or "Keep-Awake: Inactive".
QString keepAwakeHeading(bool isActive, bool isHeld);

/// The menu of the keep-awake item in the current state. `keepAwake` outlives it.
Menu keepAwakeMenu(KeepAwakeManager& keepAwake, const PowerStatus& status, std::function<void()> openSettings);

}  // namespace kestro
