#pragma once

#include "app/app_delegate.h"

namespace kestro {

/// What the application consists of on every system. Main thread.

/// The process-wide services, built on first use from the installed platform.
KestroServices sharedServices();

/// The application's real views.
SurfaceFactories kestroSurfaces();

}  // namespace kestro
