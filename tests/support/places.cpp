#include "tests/support/places.h"

namespace kestro {

std::string sourceTree() {
    return KESTRO_SOURCE_DIR;
}

std::string buildTree() {
    return KESTRO_BINARY_DIR;
}

}  // namespace kestro
