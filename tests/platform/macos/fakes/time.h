#pragma once

// This system's header, with the function and the clock that only macOS has. Implemented by the fakes.

#include_next <time.h>

#define CLOCK_UPTIME_RAW 8

extern "C" unsigned long long clock_gettime_nsec_np(clockid_t clock);
