#include "platform/macos/mac_file_system_statistics.h"

#include <sys/mount.h>
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

std::optional<FileSystemMount> MacFileSystemStatistics::statfs(const std::string& path) {
    struct ::statfs status {};
    if (::statfs(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileSystemMount{status.f_mntonname, status.f_mntfromname, status.f_fstypename};
}

}  // namespace kestro
