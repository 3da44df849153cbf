#pragma once

#include <string>

namespace kestro::test {

/// Lets every `pread` of one file fail with an error number for as long as this object lives, as the kernel does
/// for a file whose device went away while it was open: no file system for tests can do that. One at a time.
class FailingReads {
public:
    /// `path` is where the open file lies at the time of the read.
    FailingReads(const std::string& path, int errorNumber);
    ~FailingReads();
    FailingReads(const FailingReads&) = delete;
    FailingReads& operator=(const FailingReads&) = delete;
};

}  // namespace kestro::test
