#pragma once

// Only what platform/macos uses, with the types and values of xnu's bsd/sys/sysctl.h. Implemented by the fakes.

#include <mach/mach.h>

#include <cstddef>
#include <cstdint>

#define CTL_KERN 1
#define KERN_BOOTTIME 21

struct xsw_usage {
    std::uint64_t xsu_total;
    std::uint64_t xsu_avail;
    std::uint64_t xsu_used;
    std::uint32_t xsu_pagesize;
    boolean_t xsu_encrypted;
};

extern "C" {

int sysctl(int* name, unsigned int length, void* oldValue, std::size_t* oldSize, void* newValue,
           std::size_t newSize);
int sysctlbyname(const char* name, void* oldValue, std::size_t* oldSize, void* newValue, std::size_t newSize);

}  // extern "C"
