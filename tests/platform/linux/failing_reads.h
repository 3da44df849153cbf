#pragma once

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

}  // namespace kestro::test
