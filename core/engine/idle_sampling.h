#pragma once

#include "core/settings/menubar_enumerations.h"

namespace kestro {

/// Whether the engine reads the processor's load also while only the status bar shows.
constexpr bool readsCPUWhileIdle(MenubarDisplayMode mode) {
    return mode == MenubarDisplayMode::combined || mode == MenubarDisplayMode::tripleGlance ||
           mode == MenubarDisplayMode::cpuOnly;
}

}  // namespace kestro
