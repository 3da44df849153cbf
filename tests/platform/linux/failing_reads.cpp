#include "tests/platform/linux/failing_reads.h"

#include <fmt/format.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>

namespace {

thread_local std::string failingPath;
thread_local int failingNumber = 0;
thread_local std::string piecemealPath;
thread_local std::size_t largestPiece = 0;

bool isOpenAt(int descriptor, const std::string& path) {
    if (path.empty()) {
        return false;
    }
    std::array<char, 4096> target;
    const auto link = fmt::format("/proc/self/fd/{}", descriptor);
    const auto length = readlink(link.c_str(), target.data(), target.size());
    return length > 0 && std::string_view(target.data(), static_cast<std::size_t>(length)) == path;
}

}  // namespace

// Overrides the C library's function in this program.
extern "C" ssize_t pread(int descriptor, void* bytes, std::size_t count, off_t offset) {
    if (isOpenAt(descriptor, failingPath)) {
        errno = failingNumber;
        return -1;
    }
    if (isOpenAt(descriptor, piecemealPath)) {
        count = std::min(count, largestPiece);
    }
    return syscall(SYS_pread64, descriptor, bytes, count, offset);
}

namespace kestro::test {

FailingReads::FailingReads(const std::string& path, int errorNumber) {
    failingPath = path;
    failingNumber = errorNumber;
}

FailingReads::~FailingReads() {
    failingPath.clear();
}

PiecemealReads::PiecemealReads(const std::string& path, std::size_t largest) {
    piecemealPath = path;
    largestPiece = largest;
}

PiecemealReads::~PiecemealReads() {
    piecemealPath.clear();
}

}  // namespace kestro::test
