#pragma once

#include "platform/posix/descriptor.h"

#include <sys/types.h>

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

namespace kestro {

/// Identifies the contents of a file: another version has another inode, size or time of change.
struct FileVersion {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t changedNanoseconds = 0;

    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

/// nullopt: there is no such file.
std::optional<FileVersion> versionOf(const std::string& path);

/// Creates a directory and its missing parents with mode 0700. False: it does not exist afterwards.
bool makeDirectories(const std::string& directory);

enum class Replacement { done, superseded, failed };

/// Replaces the file at `path` as a whole (temporary file beside it, fsync, rename, fsync of the directory, mode
/// 0600), without following links. Its directory must exist. `superseded`: the file is no longer `expected` and
/// was left alone, as after a failure.
Replacement replaceFileAtomically(const std::string& path, const std::string& contents,
                                  const std::optional<FileVersion>& expected);

/// Removes the temporary files that replacements of `path` left behind in processes that no longer exist.
void removeAbandonedReplacements(const std::string& path);

/// Excludes every other holder of a lock on the same directory, in any process, while it exists; the kernel
/// releases it when the process dies. Waits at most two seconds for the others, and then, as on file systems
/// without locks, goes ahead without it.
class DirectoryLock {
public:
    explicit DirectoryLock(const std::string& directory);

private:
    Descriptor directory_;
};

}  // namespace kestro
