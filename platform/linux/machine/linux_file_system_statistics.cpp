#include "platform/linux/machine/linux_file_system_statistics.h"

#include <sys/statvfs.h>

#include <cerrno>

namespace kestro {

std::optional<FileSystemStatus> LinuxFileSystemStatistics::statvfs(const std::string& path) {
    struct ::statvfs status {};
    const std::string& full = root_ == "/" ? path : root_ + path;
    int result = -1;
    do {
        result = ::statvfs(full.c_str(), &status);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        return std::nullopt;
    }
    return FileSystemStatus{status.f_frsize, status.f_blocks, status.f_bavail};
}

}  // namespace kestro
