#pragma once

// Only what platform/macos uses, with the types of Apple's Libnotify. Implemented by the fakes.

#include <cstdint>

#define NOTIFY_STATUS_OK 0

extern "C" {

std::uint32_t notify_register_check(const char* name, int* token);
std::uint32_t notify_get_state(int token, std::uint64_t* state);
std::uint32_t notify_cancel(int token);

}  // extern "C"
