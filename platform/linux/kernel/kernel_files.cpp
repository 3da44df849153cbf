#include "platform/linux/kernel/kernel_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <utility>

namespace kestro {
namespace {

constexpr std::size_t initialSize = 4096;
constexpr std::size_t directoryEntryLimit = 4096;

// Files of many records (/proc/net/dev, /proc/swaps) arrive a page at a time, each chunk ending with a whole
// record. A chunk of less than half a page is therefore the last, and no further read is needed to detect the end,
// unless a record can be longer than the other half.
constexpr std::size_t surelyLastPiece = 2048;

ssize_t preadRetrying(int descriptor, char* target, std::size_t byteCount, std::size_t offset) {
    ssize_t count = -1;
    do {
        count = ::pread(descriptor, target, byteCount, static_cast<off_t>(offset));
    } while (count < 0 && errno == EINTR);
    return count;
}

bool meansGone(int errorNumber) {
    return errorNumber == ENODEV || errorNumber == ENOENT || errorNumber == ENOTDIR || errorNumber == ESTALE ||
           errorNumber == EBADF;
}

// O_NONBLOCK: do not block if the name turns out to be a pipe or a device.
int openForReading(const std::string& path) {
    return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
}

}  // namespace

ReadBuffer::ReadBuffer(std::size_t limit) : bytes_(std::min(initialSize, limit)), limit_(limit) {}

bool ReadBuffer::reserve(std::size_t byteCount) {
    if (byteCount > limit_) {
        errorNumber_ = EFBIG;
        return false;
    }
    if (byteCount > bytes_.size()) {
        bytes_.resize(std::min(std::max(byteCount, bytes_.size() * 2), limit_));
    }
    return true;
}

std::optional<std::string_view> ReadBuffer::readAll(int descriptor, Ending ending) {
    std::size_t used = 0;
    for (;;) {
        if (!reserve(used + 1)) {
            return std::nullopt;
        }
        const auto count = preadRetrying(descriptor, bytes_.data() + used, bytes_.size() - used, used);
        if (count < 0) {
            errorNumber_ = errno;
            return std::nullopt;
        }
        used += static_cast<std::size_t>(count);
        const bool isFull = used == bytes_.size();
        const bool isShort = !isFull && static_cast<std::size_t>(count) < surelyLastPiece;
        if (count == 0 || (isShort && ending == Ending::shortPiece)) {
            return std::string_view(bytes_.data(), used);
        }
    }
}

std::optional<std::string_view> ReadBuffer::readBeginning(int descriptor, std::size_t byteCount) {
    if (!reserve(byteCount)) {
        return std::nullopt;
    }
    const auto count = preadRetrying(descriptor, bytes_.data(), byteCount, 0);
    if (count < 0) {
        errorNumber_ = errno;
        return std::nullopt;
    }
    return std::string_view(bytes_.data(), static_cast<std::size_t>(count));
}

bool PersistentFile::open() {
    if (path_.empty()) {
        isGone_ = true;
        return false;
    }
    descriptor_ = Descriptor(openForReading(path_));
    isGone_ = !descriptor_.isOpen() && meansGone(errno);
    return descriptor_.isOpen();
}

template <typename Read>
std::optional<std::string_view> PersistentFile::readWith(ReadBuffer& buffer, const Read& read) {
    bool wasJustOpened = false;
    for (;;) {
        if (!descriptor_.isOpen()) {
            if (!open()) {
                return std::nullopt;
            }
            wasJustOpened = true;
        }
        const auto text = read(descriptor_.get());
        isGone_ = !text && meansGone(buffer.errorNumber());
        if (!isGone_) {
            return text;
        }
        descriptor_.close();
        if (whenGone_ == WhenGone::stayGone) {
            path_.clear();
            return std::nullopt;
        }
        if (wasJustOpened) {
            return std::nullopt;
        }
    }
}

std::optional<std::string_view> PersistentFile::read(ReadBuffer& buffer) {
    return readWith(buffer, [&](int descriptor) { return buffer.readAll(descriptor); });
}

std::optional<std::string_view> PersistentFile::readBeginning(ReadBuffer& buffer, std::size_t byteCount) {
    return readWith(buffer, [&](int descriptor) { return buffer.readBeginning(descriptor, byteCount); });
}

std::uint64_t DirectoryWatch::fingerprint() const {
    constexpr std::uint64_t offsetBasis = 14695981039346656037ULL;
    constexpr std::uint64_t prime = 1099511628211ULL;
    // Reopen each time: a kept descriptor keeps showing a directory that was removed and recreated.
    const Descriptor directory(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.isOpen()) {
        return 0;
    }
    // Sum of each entry's FNV-1a hash, so that the kernel's listing order does not matter.
    std::uint64_t sum = offsetBasis;
    alignas(dirent64) std::array<char, 8192> buffer;
    for (;;) {
        const auto count = ::getdents64(directory.get(), buffer.data(), buffer.size());
        if (count <= 0) {
            return sum;
        }
        for (ssize_t position = 0; position < count;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.data() + position);
            std::uint64_t hash = (offsetBasis ^ entry->d_ino) * prime;
            for (const char* name = entry->d_name; *name != '\0'; ++name) {
                hash = (hash ^ static_cast<unsigned char>(*name)) * prime;
            }
            sum += hash;
            position += entry->d_reclen;
        }
    }
}

bool DirectoryWatch::hasChanged() {
    const auto now = fingerprint();
    const bool changed = last_ != now;
    last_ = now;
    return changed;
}

std::string pathUnder(const std::string& root, std::string_view path) {
    std::string result = root;
    while (!result.empty() && result.back() == '/') {
        result.pop_back();
    }
    return result.append(path);
}

std::optional<std::string> readFile(const std::string& path, std::size_t limit) {
    ReadBuffer buffer(limit);
    PersistentFile file(path);
    const auto text = file.read(buffer);
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

std::vector<std::string> listDirectory(const std::string& path) {
    struct Closer {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };
    std::vector<std::string> names;
    const std::unique_ptr<DIR, Closer> directory(::opendir(path.c_str()));
    if (!directory) {
        return names;
    }
    while (const auto* entry = ::readdir(directory.get())) {
        std::string name(static_cast<const char*>(entry->d_name));
        if (name != "." && name != "..") {
            names.push_back(std::move(name));
        }
        if (names.size() == directoryEntryLimit) {
            break;
        }
    }
    std::ranges::sort(names);
    return names;
}

bool isDirectory(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isReadable(const std::string& path) {
    return ::access(path.c_str(), R_OK) == 0;
}

}  // namespace kestro
