#include "tests/platform/linux/support.h"

#include <cstdlib>
#include <new>

namespace {
thread_local std::size_t allocationCount = 0;
}

// The sanitizers bring a form of each operator of their own: all that pair up are replaced together.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    ++allocationCount;
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) {
        return memory;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace kestro::test {

std::size_t heapAllocations() {
    return allocationCount;
}

}  // namespace kestro::test
