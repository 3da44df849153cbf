#include "tests/support/allocation_counter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::int64_t allocations = 0;

}  // namespace

// In a separate file: if inlined into callers, the operators would look mismatched to the compiler.
// The sanitizers provide their own form of each operator, so all matching ones are replaced together.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocations;
    return std::malloc(size != 0 ? size : 1);
}

void* operator new(std::size_t size) {
    if (void* const storage = operator new(size, std::nothrow)) {
        return storage;
    }
    throw std::bad_alloc();
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}

void operator delete(void* storage) noexcept {
    std::free(storage);
}

void operator delete[](void* storage) noexcept {
    std::free(storage);
}

void operator delete(void* storage, std::size_t) noexcept {
    std::free(storage);
}

void operator delete[](void* storage, std::size_t) noexcept {
    std::free(storage);
}

namespace kestro::test {

std::int64_t allocationsOfThisThread() {
    return allocations;
}

}  // namespace kestro::test
