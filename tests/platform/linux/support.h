#pragma once

#include "core/platform/clock.h"
#include "tests/support/places.h"
#include "tests/support/temporary_directory.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace kestro::test {

/// The root directory of a captured machine.
inline std::string fixture(std::string_view machine) {
    return sourceTree().append("/tests/fixtures/").append(machine);
}

/// A machine's file system that a test writes file by file; deleted when this object is destroyed.
class TemporaryTree {
public:
    const std::string& root() const { return root_; }

    /// Writes a file in place, as the kernel changes an attribute: an open descriptor sees the new content.
    TemporaryTree& write(std::string_view path, std::string_view content);

    /// Deletes a file, or a directory with everything in it.
    TemporaryTree& remove(std::string_view path);

    /// Creates a symbolic link, relative as in /sys.
    TemporaryTree& link(std::string_view path, std::string_view target);

    TemporaryTree& rename(std::string_view from, std::string_view to);
    TemporaryTree& copyFrom(std::string_view machine);

private:
    TemporaryDirectory directory_;
    std::string root_ = directory_.path().string();
};

/// A clock that is stopped until a test advances it.
class ManualClock final : public Clock {
public:
    WallTime wallNow() const override { return wall_; }
    MonotonicTime monotonicNow() const override { return monotonic_; }

    void advance(std::chrono::milliseconds step) {
        wall_ += step;
        monotonic_ += step;
    }

private:
    WallTime wall_{std::chrono::seconds{1'700'000'000}};
    MonotonicTime monotonic_{std::chrono::hours{1}};
};

}  // namespace kestro::test
