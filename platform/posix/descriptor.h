#pragma once

#include <unistd.h>

#include <utility>

namespace kestro {

/// Owns a file descriptor; -1 when empty.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            close();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int get() const { return descriptor_; }
    bool isOpen() const { return descriptor_ >= 0; }

    void close() {
        if (descriptor_ >= 0) {
            ::close(std::exchange(descriptor_, -1));
        }
    }

private:
    int descriptor_ = -1;
};

}  // namespace kestro
