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

/// Event-only watching of one small file in a directory that strangers may write to, and the few operations
/// on that file. Every operation refuses a path that is not a regular file owned by this user and writable by
/// nobody else; none follows a link or blocks. Main thread.
class FileEvents {
public:
    using Handler = std::function<void()>;

    /// The most bytes that one `read` returns.
    static constexpr std::size_t longestRead = 4096;

    virtual ~FileEvents() = default;

    /// Creates an empty file, writable by this user only, unless something exists at the path already.
    virtual void createIfMissing(const std::string& path) = 0;

    /// Calls `handler` on the main thread after every write to the file, also after the file was replaced by
    /// another one or deleted and created again. nullptr: the file cannot be watched.
    [[nodiscard]] virtual std::unique_ptr<FileEventSource> watchWrites(const std::string& path,
                                                                       Handler handler) = 0;

    /// The file's bytes, at most the first `longestRead`. nullopt: it cannot be read or is not to be trusted.
    virtual std::optional<std::string> read(const std::string& path) = 0;

    /// Empties the file; failures are ignored.
    virtual void truncate(const std::string& path) = 0;
};

}  // namespace kestro
