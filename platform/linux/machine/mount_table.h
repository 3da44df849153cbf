#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// A mounted file system.
struct Mount {
    std::string device;  ///< "MAJOR:MINOR"; major 0: no block device of its own (overlay, btrfs, tmpfs)
    std::string point;
    std::string source;  ///< a device's path, or whatever the file system states
    std::string type;
    bool isReadOnly = false;     ///< here or as a whole
    bool hasUpperLayer = false;  ///< of an overlay: new files have somewhere to go

    friend bool operator==(const Mount&, const Mount&) = default;
};

/// Parses /proc/self/mountinfo (proc_pid_mountinfo(5)) in file order, which is the order of mounting; skips
/// malformed lines. Escaped blanks are resolved.
std::vector<Mount> parseMountInfo(std::string_view text);

/// The file system visible at exactly `point`: of several mounted there, the last. Null: none.
const Mount* mountAt(const std::vector<Mount>& mounts, std::string_view point);

/// The file system that contains `path`, which is absolute. Null: none.
const Mount* mountOf(const std::vector<Mount>& mounts, std::string_view path);

}  // namespace kestro
