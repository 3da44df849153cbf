#include "platform/linux/machine/linux_file_system_statistics.h"

#include "platform/linux/machine/storage_volume.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <utility>

namespace kestro {
namespace {

/// The device's path, also in place of "/dev/root", which names no device.
std::string deviceOf(const std::string& root, const Mount& mount) {
    if (mount.source != "/dev/root") {
        return mount.source;
    }
    const auto name = deviceName(root, mount);
    return name.empty() ? mount.source : "/dev/" + name;
}

}  // namespace

std::optional<FileSystemStatus> LinuxFileSystemStatistics::statusAt(const std::string& path) const {
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

bool LinuxFileSystemStatistics::haveMountsChanged() {
    if (!mounts_.isOpen()) {
        const auto path = pathUnder(root_, "/proc/self/mountinfo");
        mounts_ = Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        // The kernel's file has no size. A recorded one announces nothing.
        struct stat file {};
        announcesChanges_ = mounts_.isOpen() && ::fstat(mounts_.get(), &file) == 0 && file.st_size == 0;
        return mounts_.isOpen();
    }
    pollfd change{mounts_.get(), POLLPRI, 0};
    return !announcesChanges_ || ::poll(&change, 1, 0) > 0;
}

void LinuxFileSystemStatistics::chooseVolume() {
    // The line of an overlay with many lower layers can fill a page.
    const auto text = buffer_.readAll(mounts_.get(), ReadBuffer::Ending::emptyRead);
    const auto mounts = parseMountInfo(text.value_or(std::string_view()));
    const auto* const volume = storageVolume(root_, mounts, [this](const std::string& point) {
        const auto status = statusAt(point);
        return status ? status->blocks * status->fragmentSize : 0;
    });
    volume_ = volume != nullptr
                  ? std::optional(FileSystemMount{volume->point, deviceOf(root_, *volume), volume->type})
                  : std::nullopt;
}

std::optional<FileSystemStatus> LinuxFileSystemStatistics::statvfs(const std::string& path) {
    const auto mount = statfs(path);
    const auto status = mount ? statusAt(mount->point) : std::nullopt;
    return status ? status : statusAt(path);
}

std::optional<FileSystemMount> LinuxFileSystemStatistics::statfs(const std::string& path) {
    if (path != "/") {
        return std::nullopt;
    }
    if (haveMountsChanged()) {
        chooseVolume();
    }
    return volume_;
}

}  // namespace kestro
