#include "ui/format/keep_awake_minutes.h"

#include "core/power/keep_awake_manager.h"

#include <cstdint>

namespace kestro {

QString keepAwakeMinutes(const KeepAwakeManager& manager) {
    const auto remaining = manager.remainingSeconds.get();
    if (!manager.isActive.get() || !remaining || *remaining <= 0) {
        return {};
    }
    return QString::number(static_cast<std::int64_t>(*remaining) / 60) + QLatin1Char('m');
}

}  // namespace kestro
