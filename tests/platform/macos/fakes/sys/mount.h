#pragma once

// macOS's declarations, with the types of xnu's bsd/sys/mount.h; the function has another symbol, so that it does
// not replace the one of this system. Implemented by the fakes.

#include <cstdint>

struct statfs {
    std::uint32_t f_bsize;
    std::int32_t f_iosize;
    std::uint64_t f_blocks;
    std::uint64_t f_bfree;
    std::uint64_t f_bavail;
    std::uint64_t f_files;
    std::uint64_t f_ffree;
    std::int32_t f_fsid[2];
    std::uint32_t f_owner;
    std::uint32_t f_type;
    std::uint32_t f_flags;
    std::uint32_t f_fssubtype;
    char f_fstypename[16];
    char f_mntonname[1024];
    char f_mntfromname[1024];
    std::uint32_t f_flags_ext;
    std::uint32_t f_reserved[7];
};

extern "C" int statfs(const char* path, struct statfs* status) __asm__("fake_statfs");
