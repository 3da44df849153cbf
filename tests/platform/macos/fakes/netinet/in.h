#pragma once

// macOS's declarations, with the types of xnu's bsd/netinet/in.h.

#include <sys/socket.h>

#include <cstdint>

struct in_addr {
    std::uint32_t s_addr;
};

struct sockaddr_in {
    std::uint8_t sin_len;
    sa_family_t sin_family;
    std::uint16_t sin_port;
    struct in_addr sin_addr;
    char sin_zero[8];
};
