#pragma once

// Only what platform/macos uses, with the values of xnu's bsd/net/if_types.h.

#define IFT_OTHER 0x1
#define IFT_ETHER 0x6
#define IFT_LOOP 0x18
#define IFT_GIF 0x37
#define IFT_STF 0x39
#define IFT_L2VLAN 0x87
#define IFT_IEEE8023ADLAG 0x88
#define IFT_BRIDGE 0xd1
