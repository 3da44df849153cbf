#pragma once

// macOS's declarations, with the values of Apple's Libinfo; the function has another symbol, so that it does not
// replace the one of this system. Implemented by the fakes.

#include <sys/socket.h>

#define NI_MAXHOST 1025
#define NI_NUMERICHOST 0x2
#define EAI_FAMILY 5

extern "C" int getnameinfo(const struct sockaddr* address, socklen_t length, char* host, socklen_t hostLength,
                           char* service, socklen_t serviceLength, int flags) __asm__("fake_getnameinfo");
