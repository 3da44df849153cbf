#include "tests/platform/desktop/counted_allocations.h"

#include <cstdlib>
#include <new>

namespace {
thread_local std::uint64_t allocations = 0;
}

namespace kestro::testing_support {

std::uint64_t allocationsOfThisThread() {
    return allocations;
}

}  // namespace kestro::testing_support

// Both forms, so that a sanitizer's allocator never meets memory of the other kind.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
