#pragma once

#include "tests/drills/drill.h"

#include <QVariant>
#include <QVariantList>

namespace kestro::drills {

/// A value of any type that a message can carry, possibly huge or deeply nested.
QVariant hostileValue(DrillRandom& random, int depth = 0);

/// Up to six such values.
QVariantList hostileArguments(DrillRandom& random);

}  // namespace kestro::drills
