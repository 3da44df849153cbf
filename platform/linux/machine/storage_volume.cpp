#include "platform/linux/machine/storage_volume.h"

#include "core/base/text.h"
#include "platform/linux/kernel/kernel_files.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>
#include <utility>

namespace kestro {
namespace {

constexpr std::array<std::string_view, 7> imageTypes{"squashfs", "erofs",   "composefs", "cramfs",
                                                     "romfs",    "iso9660", "udf"};

/// File systems on local disks that may state something other than a device's path as their source.
constexpr std::array<std::string_view, 5> poolTypes{"zfs", "bcachefs", "ubifs", "jffs2", "yaffs2"};

/// Layers of mapped and loop devices that real setups stay below.
constexpr int deepest = 6;

bool contains(const auto& table, std::string_view value) {
    return std::ranges::find(table, value) != table.end();
}

std::string linkTarget(const std::string& path) {
    std::array<char, PATH_MAX> target;
    const auto length = ::readlink(path.c_str(), target.data(), target.size());
    return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

std::string lastPart(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

/// The kernel's name of a device given by its path: a mapped device has another one below /dev/mapper.
std::string nameOfSource(const std::string& root, const std::string& source) {
    constexpr std::string_view mapper = "/dev/mapper/";
    if (!source.starts_with(mapper)) {
        return source.starts_with("/dev/") ? lastPart(source) : std::string();
    }
    const auto blocks = pathUnder(root, "/sys/block");
    for (const auto& name : listDirectory(blocks)) {
        const auto mapped = readFile(blocks + "/" + name + "/dm/name");
        if (mapped && trimmed(*mapped) == source.substr(mapper.size())) {
            return name;
        }
    }
    return {};
}

std::string diskOfDevice(const std::string& root, const std::vector<Mount>& mounts, const std::string& name,
                         int depth);

std::string diskOfMount(const std::string& root, const std::vector<Mount>& mounts, const Mount& mount, int depth) {
    return diskOfDevice(root, mounts, deviceName(root, mount), depth);
}

std::string diskOfDevice(const std::string& root, const std::vector<Mount>& mounts, const std::string& name,
                         int depth) {
    if (name.empty() || name == "." || name == ".." || depth == 0) {
        return {};
    }
    const auto device = pathUnder(root, "/sys/class/block/") + name;
    if (const auto file = readFile(device + "/loop/backing_file")) {
        const auto* const holder = mountOf(mounts, trimmed(*file));
        return holder != nullptr ? diskOfMount(root, mounts, *holder, depth - 1) : std::string();
    }
    const auto below = listDirectory(device + "/slaves");
    if (!below.empty()) {
        return diskOfDevice(root, mounts, below.front(), depth - 1);
    }
    if (isReadable(device + "/partition")) {
        // The link leads to ".../DISK/PARTITION".
        const auto link = linkTarget(device);
        return lastPart(std::string_view(link).substr(0, link.rfind('/')));
    }
    return name;
}

bool isOnDisk(const Mount& mount) {
    return (mount.source.starts_with("/dev/") || contains(poolTypes, mount.type)) && !isImage(mount);
}

bool isWritable(const Mount& mount) {
    return isOnDisk(mount) && !mount.isReadOnly;
}

}  // namespace

bool isImage(const Mount& mount) {
    const bool isSealedOverlay = mount.type == "overlay" && (mount.isReadOnly || !mount.hasUpperLayer);
    return isSealedOverlay || contains(imageTypes, mount.type);
}

std::string deviceName(const std::string& root, const Mount& mount) {
    const auto link = linkTarget(pathUnder(root, "/sys/dev/block/") + mount.device);
    return link.empty() ? nameOfSource(root, mount.source) : lastPart(link);
}

std::string diskOf(const std::string& root, const std::vector<Mount>& mounts, const Mount& mount) {
    return diskOfMount(root, mounts, mount, deepest);
}

const Mount* storageVolume(const std::string& root, const std::vector<Mount>& mounts,
                           const std::function<std::uint64_t(const std::string& point)>& sizeOf) {
    const auto* const system = mountAt(mounts, "/");
    if (system == nullptr || !isImage(*system)) {
        return system;
    }
    const auto* const physicalRoot = mountAt(mounts, "/sysroot");
    if (physicalRoot != nullptr && isOnDisk(*physicalRoot)) {
        return physicalRoot;
    }
    const auto* const variable = mountAt(mounts, "/var");
    if (variable != nullptr && isWritable(*variable)) {
        return variable;
    }
    const auto systemDisk = diskOf(root, mounts, *system);
    const Mount* largest = nullptr;
    std::pair<bool, std::uint64_t> most;
    for (const auto& mount : mounts) {
        if (!isWritable(mount) || mountAt(mounts, mount.point) != &mount) {
            continue;
        }
        const bool isBeside = !systemDisk.empty() && diskOf(root, mounts, mount) == systemDisk;
        const auto rank = std::pair(isBeside, sizeOf(mount.point));
        if (rank.second > 0 && (largest == nullptr || rank > most)) {
            largest = &mount;
            most = rank;
        }
    }
    return largest != nullptr ? largest : system;
}

}  // namespace kestro
