// Preloaded into the program under test: replaces functions of the system's library so that clocks jump and writes
// to one folder fail, as a drill wishes.

#include "tests/drills/machine_troubles.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using kestro::drills::DiskTrouble;
using kestro::drills::MachineTroubles;

template <typename Function>
Function original(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

using OpenAt = int (*)(int, const char*, int, ...);

MachineTroubles* mapTroubles() {
    static const auto openAt = original<OpenAt>("openat");
    const char* const path = std::getenv(kestro::drills::troublesVariable);
    const int file = path != nullptr ? openAt(AT_FDCWD, path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) {
        return nullptr;
    }
    void* const memory = ::mmap(nullptr, sizeof(MachineTroubles), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return memory == MAP_FAILED ? nullptr : static_cast<MachineTroubles*>(memory);
}

MachineTroubles* troubles() {
    static MachineTroubles* const mapped = mapTroubles();
    return mapped;
}

std::string nameOf(int descriptor) {
    char link[64];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    char target[PATH_MAX];
    const ssize_t length = ::readlink(link, target, sizeof target);
    return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
}

bool isInFolder(std::string_view path) {
    static const char* const folder = std::getenv(kestro::drills::folderVariable);
    return folder != nullptr && path.starts_with(folder);
}

/// False: the call must fail, with errno set. Waits on a slow disk.
bool isAllowed(const std::string& path) {
    const MachineTroubles* const current = troubles();
    const DiskTrouble disk = current != nullptr ? current->disk.load() : DiskTrouble::none;
    if (disk == DiskTrouble::none || !isInFolder(path)) {
        return true;
    }
    switch (disk) {
        case DiskTrouble::full:
            errno = ENOSPC;
            return false;
        case DiskTrouble::readOnly:
            errno = EROFS;
            return false;
        case DiskTrouble::broken:
            errno = EIO;
            return false;
        case DiskTrouble::slow:
            ::usleep(static_cast<useconds_t>(current->delay.load()) * 1000);
            return true;
        case DiskTrouble::none:
            break;
    }
    return true;
}

/// As `isAllowed`, for an open file or folder. Its name is looked up only while the disk has trouble.
bool isFileAllowed(int descriptor) {
    const MachineTroubles* const current = troubles();
    return current == nullptr || current->disk.load() == DiskTrouble::none || isAllowed(nameOf(descriptor));
}

int openIfAllowed(OpenAt open, int directory, const char* path, int flags, mode_t mode) {
    const bool isForWriting = (flags & (O_WRONLY | O_RDWR | O_CREAT)) != 0;
    const bool isRelative = path[0] != '/' && directory != AT_FDCWD;
    if (isForWriting && !isAllowed(isRelative ? nameOf(directory) : std::string(path))) {
        return -1;
    }
    return open(directory, path, flags, mode);
}

mode_t modeOf(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

#define REPLACEMENT extern "C" __attribute__((visibility("default")))

// A macro, since a function cannot pass on variable arguments.
#define REPLACEMENT_OF_OPENAT(name)                                         \
    REPLACEMENT int name(int directory, const char* path, int flags, ...) { \
        static const auto next = original<OpenAt>(#name);                   \
        va_list arguments;                                                  \
        va_start(arguments, flags);                                         \
        const mode_t mode = modeOf(flags, arguments);                       \
        va_end(arguments);                                                  \
        return openIfAllowed(next, directory, path, flags, mode);           \
    }

REPLACEMENT_OF_OPENAT(openat)
REPLACEMENT_OF_OPENAT(openat64)

REPLACEMENT ssize_t write(int descriptor, const void* bytes, size_t count) {
    static const auto next = original<ssize_t (*)(int, const void*, size_t)>("write");
    if (!isFileAllowed(descriptor)) {
        return -1;
    }
    return next(descriptor, bytes, count);
}

REPLACEMENT int fsync(int descriptor) {
    static const auto next = original<int (*)(int)>("fsync");
    if (!isFileAllowed(descriptor)) {
        return -1;
    }
    return next(descriptor);
}

REPLACEMENT int renameat(int from, const char* oldName, int to, const char* newName) {
    static const auto next = original<int (*)(int, const char*, int, const char*)>("renameat");
    if (!isFileAllowed(to)) {
        return -1;
    }
    return next(from, oldName, to, newName);
}

REPLACEMENT int clock_gettime(clockid_t clock, timespec* time) {
    static const auto next = original<int (*)(clockid_t, timespec*)>("clock_gettime");
    const int result = next(clock, time);
    const MachineTroubles* const current = result == 0 ? troubles() : nullptr;
    if (current == nullptr || (clock != CLOCK_REALTIME && clock != CLOCK_BOOTTIME)) {
        return result;
    }
    constexpr std::int64_t second = 1'000'000'000;
    const std::int64_t shift = clock == CLOCK_REALTIME ? current->wallShift.load() : current->bootShift.load();
    const std::int64_t shifted = time->tv_sec * second + time->tv_nsec + shift;
    time->tv_sec = shifted / second;
    time->tv_nsec = shifted % second;
    return result;
}
