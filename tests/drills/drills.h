#pragma once

#include "tests/drills/drill.h"

namespace kestro::drills {

/// Every operation of the ports fails: one by one, all together, and at random on each surface. A round is one
/// simulated hour.
DrillReport faultsDrill(const DrillLength& length, DrillRandom& random);

/// SIGKILL at random moments while settings change through the bus, the command file and clicks. A round is one
/// kill.
DrillReport killDrill(const DrillLength& length, DrillRandom& random);

/// Hostile callers and services on both buses, and the death of the buses. A round is one attack.
DrillReport busDrill(const DrillLength& length, DrillRandom& random);

/// Obstacles in place of the command file and the preferences, and disks that fail. A round is one obstacle.
DrillReport filesDrill(const DrillLength& length, DrillRandom& random);

/// Suspends, screens, panels, simultaneous starts and ends of a session. A round is one restart of the panel.
DrillReport sessionsDrill(const DrillLength& length, DrillRandom& random);

/// Every surface opened and closed at random, and the cost at rest before and after. A round is one second.
DrillReport soakDrill(const DrillLength& length, DrillRandom& random);

}  // namespace kestro::drills
