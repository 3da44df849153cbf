#pragma once

namespace kestro {

/// Makes every View speak for itself and for the parts it paints. Any number of calls.
void installViewAccessibility();

}  // namespace kestro
