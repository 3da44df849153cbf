#include "readout/line_writer.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace kestro {

bool LineWriter::write(std::string_view text) {
    while (isOpen_ && !text.empty()) {
        const ssize_t written = ::write(descriptor_, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            // The descriptor may be shared with a program that does not block on it.
            pollfd space{descriptor_, POLLOUT, 0};
            poll(&space, 1, -1);
        } else if (errno != EINTR) {
            hasFailed_ = errno != EPIPE;
            isOpen_ = false;
        }
    }
    return text.empty();
}

}  // namespace kestro
