#pragma once

// This system's header, with the flag that only macOS has. Linux ignores it in the opening of a file for reading.

#include_next <fcntl.h>

#define O_EVTONLY 0x8000
