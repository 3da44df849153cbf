#pragma once

namespace kestro {

/// Gives memory back to the system: freed blocks, and the code and constants of programs and libraries, most of
/// which only windows need. The kernel reads the latter again, from its cache, where they are used. Main thread.
void trimMemory();

}  // namespace kestro
