#include "platform/macos/mac_file_system_statistics.h"

#include <sys/statvfs.h>

#include <cerrno>

namespace kestro {

namespace {

static_assert(sizeof(fsblkcnt_t) == 4);

}  // namespace

std::optional<FileSystemStatus> MacFileSystemStatistics::statvfs(const std::string& path) {
    struct ::statvfs status {};
    int result = 0;
    do {
        result = ::statvfs(path.c_str(), &status);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        return std::nullopt;
    }
    return FileSystemStatus{status.f_frsize, status.f_blocks, status.f_bavail};
}

}  // namespace kestro
