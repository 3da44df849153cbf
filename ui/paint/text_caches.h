#pragma once

namespace kestro {

/// Discards the shaped and fitted texts that are kept for the next repaint; it shapes them again. Main thread.
void releaseTextCaches();

}  // namespace kestro
