#pragma once

namespace kestro {

/// Discards the rendered symbols that are kept for the next repaint; it renders them again. Main thread.
void releaseSymbolCache();

}  // namespace kestro
