#pragma once

#include <systemd/sd-bus.h>

#include "readout/shown_readout.h"

namespace kestro {

/// The figure that this program can follow.
inline constexpr char memoryFigure[] = "MemoryPercent";

/// Reads a{sv} at the current place of the message; skips unknown properties and wrong types. False: there is
/// none.
bool readProperties(sd_bus_message& message, ShownReadout& readout);

/// Reads the names of properties that Kestro does not have any more.
void readLosses(sd_bus_message& message, ShownReadout& readout);

}  // namespace kestro
