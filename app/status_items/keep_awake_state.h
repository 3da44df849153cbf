#pragma once

#include "core/power/keep_awake_manager.h"

#include <optional>

namespace kestro {

/// The duration of the running period; absent while keep-awake is off, although the manager remembers the last
/// one.
inline std::optional<KeepAwakeDuration> activeDuration(const KeepAwakeManager& manager) {
    return manager.isActive.get() ? std::optional(manager.currentDuration.get()) : std::nullopt;
}

}  // namespace kestro
