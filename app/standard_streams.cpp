#include "app/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace kestro::standard_streams {

namespace {

/// The error stream for `complain`: the process's own until `silence`, a copy of it until `abandon`, then none.
int& errorStream() {
    static int descriptor = STDERR_FILENO;
    return descriptor;
}

}  // namespace

void silence() {
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (null < 0) {
        return;
    }
    constexpr int firstFree = STDERR_FILENO + 1;
    errorStream() = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, firstFree);
    if (::fcntl(STDIN_FILENO, F_GETFD) < 0) {
        ::dup2(null, STDIN_FILENO);
    }
    ::dup2(null, STDOUT_FILENO);
    ::dup2(null, STDERR_FILENO);
    if (null >= firstFree) {
        ::close(null);
    }
}

void complain(std::string_view line) {
    const std::string text = std::string(line) + '\n';
    [[maybe_unused]] const ssize_t written = ::write(errorStream(), text.data(), text.size());
}

void abandon() {
    const int stream = std::exchange(errorStream(), -1);
    if (stream > STDERR_FILENO) {
        ::close(stream);
    }
}

}  // namespace kestro::standard_streams
