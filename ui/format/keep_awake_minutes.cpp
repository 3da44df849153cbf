#include "ui/format/keep_awake_minutes.h"

#include "core/base/text.h"
#include "core/power/keep_awake_manager.h"

namespace kestro {

QString keepAwakeMinutes(const KeepAwakeManager& manager) {
    const auto remaining = manager.remainingSeconds.get();
    if (!manager.isActive.get() || !remaining || *remaining <= 0) {
        return {};
    }
    return QString::number(wholeNumber(*remaining) / 60) + QLatin1Char('m');
}

}  // namespace kestro
