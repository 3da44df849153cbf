#pragma once

#include <cstddef>
#include <string>

namespace kestro::test {

/// Makes every `pread` of one file fail with an error number for this object's lifetime, as the kernel does when
/// the device behind an open file is gone; no file system available to tests can do that. One at a time.
class FailingReads {
public:
    /// `path` is the open file's location at the time of the read.
    FailingReads(const std::string& path, int errorNumber);
    ~FailingReads();
    FailingReads(const FailingReads&) = delete;
    FailingReads& operator=(const FailingReads&) = delete;
};

/// Makes every `pread` of one file return at most so many bytes for this object's lifetime, as the kernel does
/// when the next record does not fit into the rest of its page. One at a time.
class PiecemealReads {
public:
    /// `path` is the open file's location at the time of the read.
    PiecemealReads(const std::string& path, std::size_t largestPiece);
    ~PiecemealReads();
    PiecemealReads(const PiecemealReads&) = delete;
    PiecemealReads& operator=(const PiecemealReads&) = delete;
};

}  // namespace kestro::test
