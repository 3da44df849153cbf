#include "ui/format/record_text.h"

#include "core/base/text.h"
#include "core/power/keep_awake_manager.h"
#include "core/telemetry/power_telemetry.h"

namespace kestro {

bool hasSecondCluster(const CPUTelemetry& cpu) {
    return cpu.cluster1Count >= 1 && (cpu.coreCount == 0 || cpu.coreCount > cpu.cluster0Count);
}

std::string presentClusters(const CPUTelemetry& cpu) {
    if (hasSecondCluster(cpu)) {
        return cpu.clusterDescription();
    }
    CPUTelemetry first;
    first.cluster0Name = cpu.cluster0Name;
    first.cluster0Count = cpu.cluster0Count;
    return first.clusterDescription();
}

QString powerSymbol(const PowerTelemetry& power) {
    if (power.isCharging) {
        return QStringLiteral("bolt.fill");
    }
    return power.isPluggedIn ? QStringLiteral("powerplug.fill") : QStringLiteral("battery.100");
}

QString keepAwakeMinutes(const KeepAwakeManager& manager) {
    const auto remaining = manager.remainingSeconds.get();
    if (!manager.isActive.get() || !remaining || *remaining <= 0) {
        return {};
    }
    return QString::number(wholeNumber(*remaining) / 60) + QLatin1Char('m');
}

}  // namespace kestro
