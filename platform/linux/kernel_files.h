#pragma once

#include "platform/posix/descriptor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

/// A buffer that many files are read into, one after another. It grows to what the largest of them needs and
/// stays there, up to a limit in bytes. Owned by the object whose files it serves; one thread at a time.
class ReadBuffer {
public:
    explicit ReadBuffer(std::size_t limit = std::size_t{1} << 20);

    /// The whole of an open file from its beginning. nullopt: `errorNumber` says why; EFBIG stands for a file
    /// larger than the limit. The view lasts until the next call.
    std::optional<std::string_view> readAll(int descriptor);

    /// At most the first `byteCount` bytes, with one system call.
    std::optional<std::string_view> readBeginning(int descriptor, std::size_t byteCount);

    int errorNumber() const { return errorNumber_; }

private:
    bool reserve(std::size_t byteCount);

    std::vector<char> bytes_;
    std::size_t limit_;
    int errorNumber_ = 0;
};

/// A file that is read again and again and stays open. Move-only. One thread at a time.
class PersistentFile {
public:
    /// What follows when the device behind the open file went away (hot-plug, suspend, a driver loaded again).
    enum class WhenGone {
        openAgain,  ///< the path names the same thing as ever
        stayGone,   ///< the path may name another device by now, so that only a new search can tell
    };

    PersistentFile() = default;
    explicit PersistentFile(std::string path, WhenGone whenGone = WhenGone::openAgain)
        : path_(std::move(path)), whenGone_(whenGone) {}

    /// What the file holds now; the view lasts until the buffer's next use. nullopt: it cannot be read. When
    /// `isGone`, that is so until the path names something again, and for good after a device that `stayGone`
    /// took for lost; else for the moment (a sensor answers ENODATA while its device wakes up).
    std::optional<std::string_view> read(ReadBuffer& buffer);

    /// The same for at most the first `byteCount` bytes.
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

/// Tells whether the entries of a directory are others than before, without allocating. One thread at a time.
class DirectoryWatch {
public:
    explicit DirectoryWatch(std::string path) : path_(std::move(path)) {}

    /// Whether an entry was added, removed, renamed or replaced since the last call; true at the first one. A
    /// directory that comes or goes counts as changed.
    bool hasChanged();

private:
    std::uint64_t fingerprint() const;

    std::string path_;
    std::optional<std::uint64_t> last_;
};

/// Where `path`, which begins with a slash, lies in a file system that is mounted at `root`.
std::string pathUnder(const std::string& root, std::string_view path);

/// A file that is read once in a while. nullopt: it cannot be read or is larger than `limit` bytes.
std::optional<std::string> readFile(const std::string& path, std::size_t limit = 65536);

/// Names in a directory in byte order, without the two dot entries; empty when it cannot be read. At most
/// 4096 names are taken.
std::vector<std::string> listDirectory(const std::string& path);

bool isDirectory(const std::string& path);
bool isReadable(const std::string& path);

}  // namespace kestro
