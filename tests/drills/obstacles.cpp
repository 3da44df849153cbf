#include "tests/drills/obstacles.h"

#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

namespace kestro::drills {

namespace {

namespace fs = std::filesystem;

constexpr auto word = "dashboard";
constexpr std::uintmax_t manyBytes = 5'000'000;
constexpr off_t hugeSize = off_t{1} << 40;
constexpr std::size_t readSize = 4096;
constexpr int mostAttempts = 100;

/// The user after this one.
uid_t stranger() {
    return ::geteuid() + 1;
}

bool write(const fs::path& path, const std::string& text, mode_t mode = S_IRUSR | S_IWUSR) {
    std::ofstream(path, std::ios::binary) << text;
    return ::chmod(path.c_str(), mode) == 0;
}

bool link(const char* target, const fs::path& path) {
    return ::symlink(target, path.c_str()) == 0;
}

/// A file beside the obstacle, which other obstacles refer to.
fs::path neighbour(const fs::path& path) {
    return path.parent_path() / ".neighbour";
}

bool makeSocket(const fs::path& path) {
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    return ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool makeHuge(const fs::path& path) {
    return write(path, word) && ::truncate(path.c_str(), hugeSize) == 0;
}

bool makeMany(const fs::path& path) {
    std::string text;
    while (text.size() < manyBytes) {
        text += "dashboard\n";
    }
    return write(path, text);
}

constexpr std::array obstacles{
    Obstacle{"a link to a file",
             [](const fs::path& path) { return write(neighbour(path), word) && link(".neighbour", path); }, false},
    Obstacle{"a dangling link", [](const fs::path& path) { return link("missing/file", path); }, false},
    Obstacle{"a link to a device", [](const fs::path& path) { return link("/dev/zero", path); }, false},
    Obstacle{"a link to a full device", [](const fs::path& path) { return link("/dev/full", path); }, false},
    Obstacle{"a link to a folder", [](const fs::path& path) { return link("/proc", path); }, false},
    Obstacle{"a pipe", [](const fs::path& path) { return ::mkfifo(path.c_str(), S_IRUSR | S_IWUSR) == 0; }, false},
    Obstacle{"a device",
             [](const fs::path& path) {
                 return ::mknod(path.c_str(), S_IFCHR | S_IRUSR | S_IWUSR, makedev(1, 5)) == 0;
             },
             false},
    Obstacle{"a socket", makeSocket, false},
    Obstacle{"a folder", [](const fs::path& path) { return fs::create_directory(path); }, false},
    Obstacle{"a folder with a file",
             [](const fs::path& path) { return fs::create_directory(path) && write(path / "file", word); }, false},
    Obstacle{"a second name of a file",
             [](const fs::path& path) {
                 // The first name stays: without it, the file would be the user's own.
                 const fs::path first = path.parent_path() / ".first";
                 return (fs::exists(first) || write(first, word)) && ::link(first.c_str(), path.c_str()) == 0;
             },
             false},
    Obstacle{"a file that others may write",
             [](const fs::path& path) { return write(path, word, S_IRUSR | S_IWUSR | S_IWOTH); }, false},
    Obstacle{"a file of another user",
             [](const fs::path& path) {
                 return write(path, word) && ::chown(path.c_str(), stranger(), stranger()) == 0;
             },
             false},
    Obstacle{"a file without permissions", [](const fs::path& path) { return write(path, "none", 0); }, true},
    Obstacle{"a file that is only readable", [](const fs::path& path) { return write(path, "none", S_IRUSR); },
             true},
    Obstacle{"an empty file", [](const fs::path& path) { return write(path, ""); }, true},
    Obstacle{"bytes that are no text",
             [](const fs::path& path) { return write(path, std::string("dashboard\0\xff\xfe", 12)); }, true},
    Obstacle{"a full read", [](const fs::path& path) { return write(path, word + std::string(readSize, ' ')); },
             true},
    Obstacle{"five megabytes", makeMany, true},
    Obstacle{"a terabyte", makeHuge, true},
};

}  // namespace

std::span<const Obstacle> allObstacles() {
    return obstacles;
}

void clear(const fs::path& path) {
    const fs::path removed = path.parent_path() / ".removed";
    std::error_code ignored;
    fs::remove_all(removed, ignored);
    fs::rename(path, removed, ignored);
    fs::remove_all(removed, ignored);
}

bool place(const Obstacle& obstacle, const fs::path& path) {
    const fs::path made = path.parent_path() / ".made";
    clear(made);
    fs::create_directories(path.parent_path());
    if (!obstacle.make(made)) {
        clear(made);
        return false;
    }
    // The program may create the file again between two attempts.
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const unsigned flags = fs::exists(fs::symlink_status(path)) ? RENAME_EXCHANGE : RENAME_NOREPLACE;
        if (::renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, path.c_str(), flags) == 0) {
            clear(made);
            return true;
        }
    }
    return false;
}

}  // namespace kestro::drills
