#pragma once

namespace kestro {

/// Exposes every View with its painted parts, every window as a window, and every plain widget with an accessible
/// name as a group. Idempotent. Affects only widgets whose accessible interface has not been created yet.
void installViewAccessibility();

}  // namespace kestro
