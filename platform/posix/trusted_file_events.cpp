#include "platform/posix/trusted_file_events.h"

#include "platform/posix/bounded_read.h"
#include "platform/posix/trusted_file.h"

#include <fcntl.h>
#include <unistd.h>

namespace kestro {

void TrustedFileEvents::createIfMissing(const std::string& path) {
    createTrusted(path);
}

std::optional<std::string> TrustedFileEvents::read(const std::string& path) {
    const auto file = openTrusted(path, O_RDONLY);
    return file.isOpen() ? readAtMost(file.get(), longestRead) : std::nullopt;
}

void TrustedFileEvents::truncate(const std::string& path) {
    const auto file = openTrusted(path, O_WRONLY);
    if (file.isOpen()) {
        // A failure is harmless: the contents have already been read.
        [[maybe_unused]] const int result = ftruncate(file.get(), 0);
    }
}

}  // namespace kestro
