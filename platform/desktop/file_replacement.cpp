#include "platform/desktop/file_replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace kestro {

namespace {

using namespace std::chrono_literals;

constexpr auto longestLockWait = 2s;
constexpr auto lockRetry = 5ms;
constexpr std::string_view temporaryMark = ".new-";

bool writeAll(int descriptor, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Writes and syncs a new file. False: it may exist incompletely.
bool writeNewFile(int directory, const std::string& name, const std::string& contents) {
    const Descriptor file(
        ::openat(directory, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    return file.isOpen() && ::fchmod(file.get(), 0600) == 0 && writeAll(file.get(), contents) &&
           ::fsync(file.get()) == 0;
}

/// The process that made a temporary file, from its name; nullopt: not the name of one.
std::optional<pid_t> makerOf(std::string_view name, std::string_view replacedName) {
    if (!name.starts_with(replacedName) || !name.substr(replacedName.size()).starts_with(temporaryMark)) {
        return std::nullopt;
    }
    const std::string_view digits = name.substr(replacedName.size() + temporaryMark.size());
    pid_t maker = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), maker);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    return isWhole && maker > 0 ? std::optional(maker) : std::nullopt;
}

bool exists(pid_t process) {
    return ::kill(process, 0) == 0 || errno != ESRCH;
}

}  // namespace

std::optional<FileVersion> versionOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return FileVersion{status.st_dev, status.st_ino, status.st_size,
                       status.st_ctim.tv_sec * nanoseconds + status.st_ctim.tv_nsec};
}

bool makeDirectories(const std::string& directory) {
    std::filesystem::path made;
    for (const auto& component : std::filesystem::path(directory)) {
        made /= component;
        ::mkdir(made.c_str(), 0700);  // most already exist
    }
    std::error_code error;
    return std::filesystem::is_directory(directory, error);
}

Replacement replaceFileAtomically(const std::string& path, const std::string& contents,
                                  const std::optional<FileVersion>& expected) {
    const std::filesystem::path target(path);
    const Descriptor directory(::open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.isOpen()) {
        return Replacement::failed;
    }
    const std::string name = target.filename();
    const std::string temporary = name + std::string(temporaryMark) + std::to_string(::getpid());
    const auto discard = [&] { ::unlinkat(directory.get(), temporary.c_str(), 0); };
    discard();  // that of a crash, whose process had this number
    if (!writeNewFile(directory.get(), temporary, contents)) {
        discard();
        return Replacement::failed;
    }
    if (versionOf(path) != expected) {
        discard();
        return Replacement::superseded;
    }
    if (::renameat(directory.get(), temporary.c_str(), directory.get(), name.c_str()) != 0) {
        discard();
        return Replacement::failed;
    }
    ::fsync(directory.get());
    return Replacement::done;
}

void removeAbandonedReplacements(const std::string& path) {
    const std::filesystem::path target(path);
    const std::string replacedName = target.filename();
    std::vector<std::filesystem::path> abandoned;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(target.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        const auto maker = makerOf(entry->path().filename().native(), replacedName);
        if (maker && !exists(*maker)) {
            abandoned.push_back(entry->path());
        }
    }
    for (const auto& file : abandoned) {
        ::unlink(file.c_str());
    }
}

DirectoryLock::DirectoryLock(const std::string& directory)
    : directory_(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    const auto deadline = std::chrono::steady_clock::now() + longestLockWait;
    while (directory_.isOpen() && ::flock(directory_.get(), LOCK_EX | LOCK_NB) != 0 &&
           (errno == EWOULDBLOCK || errno == EINTR) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(lockRetry);
    }
}

}  // namespace kestro
