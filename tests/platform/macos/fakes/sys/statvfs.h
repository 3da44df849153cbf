#pragma once

// macOS's declarations, with the types of Apple's Libc; the function has another symbol, so that it does not
// replace the one of this system. Implemented by the fakes.

#include <sys/types.h>

using darwin_fsblkcnt_t = unsigned int;
using darwin_fsfilcnt_t = unsigned int;
#define fsblkcnt_t darwin_fsblkcnt_t
#define fsfilcnt_t darwin_fsfilcnt_t

struct statvfs {
    unsigned long f_bsize;
    unsigned long f_frsize;
    fsblkcnt_t f_blocks;
    fsblkcnt_t f_bfree;
    fsblkcnt_t f_bavail;
    fsfilcnt_t f_files;
    fsfilcnt_t f_ffree;
    fsfilcnt_t f_favail;
    unsigned long f_fsid;
    unsigned long f_flag;
    unsigned long f_namemax;
};

extern "C" int statvfs(const char* path, struct statvfs* status) __asm__("fake_statvfs");
