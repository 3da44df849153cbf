#include "platform/posix/bounded_read.h"

#include <unistd.h>

#include <cerrno>

namespace kestro {

std::optional<std::string> readAtMost(int descriptor, std::size_t limit) {
    std::string bytes(limit, '\0');
    std::size_t length = 0;
    while (length < limit) {
        const ssize_t count = ::read(descriptor, bytes.data() + length, limit - length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return bytes;
}

}  // namespace kestro
