#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kestro {

/// A running watch; destroying it cancels it and closes its descriptor.
class FileEventSource {
public:
    virtual ~FileEventSource() = default;
};

/// Event-driven watching of one small file in a directory where other users may write, and the few operations on
/// that file. Every operation rejects a path that is not a regular file, owned by this user and writable by no
/// other user; none follows a symbolic link or blocks. Main thread.
class FileEvents {
public:
    using Handler = std::function<void()>;

    /// The most bytes that one `read` returns.
    static constexpr std::size_t longestRead = 4096;

    virtual ~FileEvents() = default;

    /// Creates an empty file that only this user may write, unless something already exists at the path.
    virtual void createIfMissing(const std::string& path) = 0;

    /// Calls `handler` on the main thread after every write to the file, even after the file is replaced, or
    /// deleted and recreated. A file that is missing, or that this user has made writable by others, is replaced
    /// by a new, empty one, like that of `createIfMissing`. nullptr: the file cannot be watched.
    [[nodiscard]] virtual std::unique_ptr<FileEventSource> watchWrites(const std::string& path,
                                                                       Handler handler) = 0;

    /// The file's contents, at most the first `longestRead` bytes. nullopt: it cannot be read or is not trusted.
    virtual std::optional<std::string> read(const std::string& path) = 0;

    /// Empties the file; failures are ignored.
    virtual void truncate(const std::string& path) = 0;
};

}  // namespace kestro
