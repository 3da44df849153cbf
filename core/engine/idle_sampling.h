#pragma once

#include "core/settings/menubar_enumerations.h"

namespace kestro {

/// Whether a display mode has the processor's load read also while only the status bar shows.
constexpr bool readsCPUWhileIdle(MenubarDisplayMode mode) {
    return mode == MenubarDisplayMode::combined || mode == MenubarDisplayMode::tripleGlance ||
           mode == MenubarDisplayMode::cpuOnly;
}

}  // namespace kestro
