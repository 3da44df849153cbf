#pragma once

// macOS's declarations, with the types and values of xnu's bsd/net/if.h and if_var.h.

#include <cstdint>

#define IFF_UP 0x1
#define IFF_LOOPBACK 0x8
#define IFF_POINTOPOINT 0x10
#define IFF_RUNNING 0x40

struct timeval32 {
    std::int32_t tv_sec;
    std::int32_t tv_usec;
};

struct if_data {
    std::uint8_t ifi_type;
    std::uint8_t ifi_typelen;
    std::uint8_t ifi_physical;
    std::uint8_t ifi_addrlen;
    std::uint8_t ifi_hdrlen;
    std::uint8_t ifi_recvquota;
    std::uint8_t ifi_xmitquota;
    std::uint8_t ifi_unused1;
    std::uint32_t ifi_mtu;
    std::uint32_t ifi_metric;
    std::uint32_t ifi_baudrate;
    std::uint32_t ifi_ipackets;
    std::uint32_t ifi_ierrors;
    std::uint32_t ifi_opackets;
    std::uint32_t ifi_oerrors;
    std::uint32_t ifi_collisions;
    std::uint32_t ifi_ibytes;
    std::uint32_t ifi_obytes;
    std::uint32_t ifi_imcasts;
    std::uint32_t ifi_omcasts;
    std::uint32_t ifi_iqdrops;
    std::uint32_t ifi_noproto;
    std::uint32_t ifi_recvtiming;
    std::uint32_t ifi_xmittiming;
    struct timeval32 ifi_lastchange;
    std::uint32_t ifi_unused2;
    std::uint32_t ifi_hwassist;
    std::uint32_t ifi_reserved1;
    std::uint32_t ifi_reserved2;
};
