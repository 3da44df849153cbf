#include "core/platform/platform.h"

#include <cassert>

namespace kestro {

namespace {
const Platform* installed = nullptr;
}

const Platform& Platform::current() {
    assert(installed != nullptr);
    return *installed;
}

void Platform::install(const Platform& platform) {
    installed = &platform;
}

}  // namespace kestro
