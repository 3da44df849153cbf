#include "platform/macos/kernel_values.h"

#include <sys/sysctl.h>

#include <algorithm>

namespace kestro {

std::optional<std::string> kernelText(const char* name) {
    std::size_t size = 0;
    if (sysctlbyname(name, nullptr, &size, nullptr, 0) != 0) {
        return std::nullopt;
    }
    std::string text(size, '\0');
    if (sysctlbyname(name, text.data(), &size, nullptr, 0) != 0) {
        return std::nullopt;
    }
    text.resize(std::min(size, text.size()));
    text.resize(std::min(text.find('\0'), text.size()));
    return text;
}

}  // namespace kestro
