#pragma once

#include "shell/macos/native_menu.h"
#include "ui/menus/menu_entry.h"

namespace kestro {

/// The key equivalent of a portable key sequence with a single key, such as "Ctrl+D", in which a Mac's Command is
/// Ctrl and its Control is Meta. Function keys and further keys of a sequence have none.
KeyEquivalent keyEquivalent(const QString& shortcut);

/// The menu as AppKit shows it. Choosing an entry runs its action, whether or not the translated menu still
/// exists.
NativeMenu nativeMenu(const Menu& menu);

}  // namespace kestro
