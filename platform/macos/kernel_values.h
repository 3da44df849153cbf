#pragma once

#include <sys/sysctl.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kestro {

// sysctl(3) by name, for values of a fixed size and for text. Any thread.

/// nullopt: the kernel lacks the name, or its value has another size.
template <typename Value>
std::optional<Value> kernelValue(const char* name) {
    Value value{};
    std::size_t size = sizeof value;
    const bool isRead = sysctlbyname(name, &value, &size, nullptr, 0) == 0 && size == sizeof value;
    return isRead ? std::optional(value) : std::nullopt;
}

/// Text up to the first zero byte. nullopt: the kernel lacks the name.
std::optional<std::string> kernelText(const char* name);

}  // namespace kestro
