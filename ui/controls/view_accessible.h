#pragma once

namespace kestro {

/// Makes every View speak for itself and for the parts it paints, every window a window, and every plain widget
/// with an accessible name a group. Any number of calls; holds for widgets that nobody has asked about before.
void installViewAccessibility();

}  // namespace kestro
