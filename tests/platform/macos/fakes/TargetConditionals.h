#pragma once

// Only what platform/macos uses.

#define TARGET_OS_OSX 1
