#pragma once

#include "platform/posix/descriptor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// A buffer shared by several files that are read in turn. It grows to the size of the largest and keeps that
/// size, up to a limit in bytes. Owned by the object whose files it serves; one thread at a time.
class ReadBuffer {
public:
    /// What shows that a file ends.
    enum class Ending {
        shortPiece,  ///< a read of less than half a page; for files whose records are shorter than that
        emptyRead,   ///< a read of nothing, which takes a further system call
    };

    explicit ReadBuffer(std::size_t limit = std::size_t{1} << 20);

    /// The whole of an open file from its beginning. nullopt: see `errorNumber`; EFBIG means that the file exceeds
    /// the limit. The view is valid until the next call.
    std::optional<std::string_view> readAll(int descriptor, Ending ending = Ending::shortPiece);

    /// At most the first `byteCount` bytes, with one system call.
    std::optional<std::string_view> readBeginning(int descriptor, std::size_t byteCount);

    int errorNumber() const { return errorNumber_; }

private:
    bool reserve(std::size_t byteCount);

    std::vector<char> bytes_;
    std::size_t limit_;
    int errorNumber_ = 0;
};

/// A file that is read repeatedly and stays open. Move-only. One thread at a time.
class PersistentFile {
public:
    /// What to do when the device behind the open file disappears (hot-plug, suspend, driver reload).
    enum class WhenGone {
        openAgain,  ///< the path still refers to the same thing
        stayGone,   ///< the path may refer to another device now; a new search is required
    };

    PersistentFile() = default;
    explicit PersistentFile(std::string path, WhenGone whenGone = WhenGone::openAgain)
        : path_(std::move(path)), whenGone_(whenGone) {}

    /// The file's current contents; the view is valid until the buffer's next use. nullopt: it cannot be read. If
    /// `isGone`, this lasts until the path exists again, or forever with `stayGone` once the device is lost;
    /// otherwise it is temporary (a sensor returns ENODATA while its device wakes up).
    std::optional<std::string_view> read(ReadBuffer& buffer);

    /// The same, but at most the first `byteCount` bytes.
    std::optional<std::string_view> readBeginning(ReadBuffer& buffer, std::size_t byteCount);

    /// Whether the last failed read found the file or its device missing.
    bool isGone() const { return isGone_; }

    const std::string& path() const { return path_; }

private:
    template <typename Read>
    std::optional<std::string_view> readWith(ReadBuffer& buffer, const Read& read);
    bool open();

    std::string path_;
    WhenGone whenGone_ = WhenGone::openAgain;
    Descriptor descriptor_;
    bool isGone_ = false;
};

/// Detects changes of a directory's entries without allocating. One thread at a time.
class DirectoryWatch {
public:
    explicit DirectoryWatch(std::string path) : path_(std::move(path)) {}

    /// Whether an entry was added, removed, renamed or replaced since the last call; true on the first call. A
    /// directory that appears or disappears counts as changed.
    bool hasChanged();

private:
    std::uint64_t fingerprint() const;

    std::string path_;
    std::optional<std::uint64_t> last_;
};

/// Maps `path`, which begins with a slash, into the file system mounted at `root`.
std::string pathUnder(const std::string& root, std::string_view path);

/// Reads a whole file, for files that are read rarely. nullopt: it cannot be read or exceeds `limit` bytes.
std::optional<std::string> readFile(const std::string& path, std::size_t limit = 65536);

/// Names in a directory in byte order, without the two dot entries; empty when it cannot be read. At most 4096
/// names.
std::vector<std::string> listDirectory(const std::string& path);

bool isDirectory(const std::string& path);
bool isReadable(const std::string& path);

}  // namespace kestro
