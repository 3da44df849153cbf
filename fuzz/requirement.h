#pragma once

#include <cstdlib>

namespace kestro {

/// Ends the process, which the fuzzer reports, unless `holds`.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace kestro
