#pragma once

#include <atomic>
#include <cstdint>

namespace kestro::drills {

enum class DiskTrouble : std::int32_t { none, full, readOnly, broken, slow };

/// What is wrong with the machine that a program sees. Shared between a drill, which sets it, and the library
/// that the drill preloads into the program; zeros mean nothing is.
struct MachineTroubles {
    std::atomic<std::int64_t> wallShift;  ///< added to the wall clock, in nanoseconds
    std::atomic<std::int64_t> bootShift;  ///< added to the clock that counts suspended time
    std::atomic<DiskTrouble> disk;        ///< of one folder
    std::atomic<std::int32_t> delay;      ///< of each call to a slow disk, in milliseconds
};
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

/// Names of the environment variables that the library reads: the shared file, and the folder with the disk.
constexpr auto troublesVariable = "KESTRO_DRILL_TROUBLES";
constexpr auto folderVariable = "KESTRO_DRILL_FOLDER";

}  // namespace kestro::drills
