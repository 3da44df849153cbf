#pragma once

#include "app/status_bar/status_bar.h"
#include "ui/kestro_services.h"

namespace kestro {

/// What the main item shows now: the readout that the user composed, and for hosts without text the memory
/// and processor loads to paint into the icon, unless the user wants the bare icon or lists no module. Main
/// thread.
StatusContent mainStatusContent(const KestroServices& services);

}  // namespace kestro
