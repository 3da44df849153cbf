#include "ui/popover/popover_content.h"

#include "ui/format/figure_text.h"
#include "ui/format/record_text.h"
#include "ui/format/unmeasured.h"

#include <algorithm>

namespace kestro {

namespace {

constexpr double criticalTemperature = 80.0;
constexpr std::size_t fansInThreeColumns = 5;

QString loadText(double usage, bool isMeasured) {
    return isMeasured ? percentText(usage) : pendingFigure();
}

ClusterContent cluster(const std::string& name, double usage, bool isMeasured) {
    return {QString::fromStdString(name), loadText(usage, isMeasured), isMeasured ? usage / 100 : 0};
}

}  // namespace

ComputeContent computeContent(const CPUTelemetry& cpu, bool isMeasured) {
    ComputeContent content;
    content.total = loadText(cpu.totalUsage, isMeasured) + QStringLiteral(" Total");
    content.first = cluster(cpu.cluster0Name, cpu.cluster0Usage, isMeasured);
    if (hasSecondCluster(cpu)) {
        content.second = cluster(cpu.cluster1Name, cpu.cluster1Usage, isMeasured);
    } else if (cpu.coreLoads.size() > 1) {
        const auto busiest = std::ranges::max_element(cpu.coreLoads, {}, &CoreLoad::usagePercentage);
        content.second = cluster("Busiest Core", busiest->usagePercentage, isMeasured);
    }
    return content;
}

MemoryContent memoryContent(const MemoryTelemetry& memory) {
    return {percentText(memory.usedPercentage()),
            gigabytesText(memory.usedBytes) + QStringLiteral(" of ") + gigabytesText(memory.totalBytes)};
}

CoolingHeading coolingHeading(std::size_t fanCount) {
    if (fanCount == 0) {
        return {QStringLiteral("Acoustics & Thermals (Passive)"), QStringLiteral("leaf.fill")};
    }
    if (fanCount == 1) {
        return {QStringLiteral("Fan RPM & Thermals"), QStringLiteral("fanblades")};
    }
    return {QStringLiteral("Dual Fan RPM & Thermals"), QStringLiteral("fanblades")};
}

QString fanLabel(const QString& name, std::size_t fanCount) {
    const QString word = QStringLiteral("Fan ");
    return fanCount >= fansInThreeColumns && name.startsWith(word) ? name.mid(word.size()) : name;
}

bool isCriticalTemperature(const ThermalTelemetry& thermals, bool isMeasured) {
    return isMeasured && thermals.averageSoCTemp > criticalTemperature;
}

QString rateText(double bytesPerSecond, bool isMeasured) {
    return isMeasured ? QString::fromStdString(formatRate(bytesPerSecond)) : pendingFigure();
}

QString freeSpaceText(const DiskTelemetry& disk) {
    return gigabytesText(disk.freeBytes) + QStringLiteral(" Free");
}

QString batteryText(const PowerTelemetry& power) {
    return percentText(power.percentage);
}

}  // namespace kestro
