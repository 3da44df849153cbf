#pragma once

#include "core/model/menubar_enumerations.h"

namespace kestro {

/// Whether a display mode also samples the CPU load while only the status bar is visible.
constexpr bool readsCPUWhileIdle(MenubarDisplayMode mode) {
    return mode == MenubarDisplayMode::combined || mode == MenubarDisplayMode::tripleGlance ||
           mode == MenubarDisplayMode::cpuOnly;
}

}  // namespace kestro
