#pragma once

// macOS's declarations, with the types and values of xnu's bsd/sys/socket.h.

#include <cstdint>

#define AF_INET 2
#define AF_LINK 18
#define AF_INET6 30

using socklen_t = std::uint32_t;
using sa_family_t = std::uint8_t;

struct sockaddr {
    std::uint8_t sa_len;
    sa_family_t sa_family;
    char sa_data[14];
};
