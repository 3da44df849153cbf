#pragma once

#include "shell/macos/native_status_item.h"
#include "shell/status_bar.h"

namespace kestro {

/// NSFontWeight of a weight from 100 to 900: the nearest one that the system font has.
double nativeFontWeight(int weight);

/// An item's content as the menu bar shows it: always with its title, so that the figures painted into an icon are
/// not needed, and in the menu bar's own colours. The tooltip repeats nothing that is visible.
NativeStatusContent nativeStatusContent(const StatusContent& content);

}  // namespace kestro
