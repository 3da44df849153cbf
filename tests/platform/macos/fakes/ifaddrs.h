#pragma once

// macOS's declarations, with the types of Apple's Libinfo; the functions have other symbols, so that they do not
// replace those of this system. Implemented by the fakes.

#include <sys/socket.h>

struct ifaddrs {
    struct ifaddrs* ifa_next;
    char* ifa_name;
    unsigned int ifa_flags;
    struct sockaddr* ifa_addr;
    struct sockaddr* ifa_netmask;
    struct sockaddr* ifa_dstaddr;
    void* ifa_data;
};

extern "C" int getifaddrs(struct ifaddrs** list) __asm__("fake_getifaddrs");
extern "C" void freeifaddrs(struct ifaddrs* list) __asm__("fake_freeifaddrs");
