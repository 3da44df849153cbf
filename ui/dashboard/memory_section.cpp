#include "ui/dashboard/memory_section.h"

#include "core/engine/telemetry_engine.h"
#include "ui/controls/words.h"
#include "ui/format/figure_text.h"
#include "ui/format/volume_text.h"

#include <algorithm>

namespace kestro {

namespace {

constexpr double idleShareOpacity = 0.22;

QString ofText(std::uint64_t part, std::uint64_t whole) {
    return oneDecimalText(gigabytes(part)) + QStringLiteral(" of ") + gigabytesText(whole);
}

double share(std::uint64_t part, std::uint64_t whole) {
    return whole == 0 ? 0 : std::min(1.0, static_cast<double>(part) / static_cast<double>(whole));
}

RuledIndexContent swapRow(const MemoryTelemetry& memory, bool compact) {
    RuledIndexContent content;
    content.label = QStringLiteral("Swap");
    const bool isShort = compact || memory.swapTotalBytes == 0;
    content.value =
        isShort ? gigabytesText(memory.swapUsedBytes) : ofText(memory.swapUsedBytes, memory.swapTotalBytes);
    content.progressFraction = share(memory.swapUsedBytes, memory.swapTotalBytes);
    content.progressTint = KestroTheme::accentWarning;
    return content;
}

RuledIndexContent volumeRow(const DiskTelemetry& disk) {
    RuledIndexContent content;
    content.label = Words(disk.volumeName);
    content.value = Words(disk.fileSystem);
    content.progressFraction = share(disk.usedBytes, disk.totalBytes);
    return content;
}

}  // namespace

std::array<RuledIndexContent, 7> memoryRows(const MemoryTelemetry& memory, const DiskTelemetry& disk,
                                            bool compact) {
    const auto row = [&memory](const char* label, std::uint64_t bytes, const Ink& ink) {
        RuledIndexContent content;
        content.label = Words(label);
        content.value = gigabytesText(bytes);
        content.progressFraction = share(bytes, memory.totalBytes);
        content.progressTint = ink;
        return content;
    };
    const Ink idle = Ink::white(idleShareOpacity);
    return {row("Active", memory.activeBytes, KestroTheme::accentCool),
            row("Wired", memory.wiredBytes, KestroTheme::accentCool),
            row("Compressed", memory.compressedBytes, KestroTheme::accentCool),
            row("Inactive", memory.inactiveBytes, idle),
            row("Free", memory.freeBytes, idle),
            swapRow(memory, compact),
            volumeRow(disk)};
}

std::array<GaugeContent, 2> memoryGauges(const MemoryTelemetry& memory, const DiskTelemetry& disk,
                                         SectionTier tier) {
    const bool isTight = tier == SectionTier::tight;
    const QString used = isTight ? gigabytesText(memory.usedBytes) : ofText(memory.usedBytes, memory.totalBytes);
    const QString free = isTight ? wholeText(gigabytes(disk.freeBytes)) + QStringLiteral(" GB")
                                 : gigabytesText(disk.freeBytes) + QStringLiteral(" free");
    const auto gauge = [](const char* title, const QString& subtitle, double percent) {
        return GaugeContent{Words(title), subtitle, percent, 0, 100, QStringLiteral("%"), KestroTheme::accentCool};
    };
    return {gauge("Memory", used, memory.usedPercentage()), gauge("Storage", free, disk.usedPercentage())};
}

Ink pressureInk(const std::string& level) {
    if (level == "Critical") {
        return KestroTheme::accentCritical;
    }
    return level == "Warning" ? KestroTheme::accentWarning : KestroTheme::accentNominal;
}

MemorySection::MemorySection(const KestroServices& services, QWidget* parent)
    : DashboardSection(QStringLiteral("memorychip"), QStringLiteral("Memory"), {}, parent),
      engine_(services.engine),
      gauges_{new MetricGauge(false, this), new MetricGauge(false, this)} {
    for (RuledIndexRow*& row : rows_) {
        row = new RuledIndexRow(false, this);
    }
    follow(engine_.memory, [this] { refresh(); });
    follow(engine_.disk, [this] { refresh(); });
}

void MemorySection::refresh() {
    const MemoryTelemetry& memory = engine_.memory.get();
    const DiskTelemetry& disk = engine_.disk.get();
    const SectionTier tier = grid().tier;
    showGauges(gauges_, memoryGauges(memory, disk, tier));
    const auto rows = memoryRows(memory, disk, isCompact(tier));
    for (size_t i = 0; i < rows.size(); ++i) {
        rows_[i]->setContent(rows[i]);
    }
    rows_.back()->setHelp(volumeText(disk));
    gauges_.back()->setHelp(volumeText(disk));
    setBadge(Words(memory.pressureLevel), pressureInk(memory.pressureLevel), QStringLiteral("Memory pressure"));
}

void MemorySection::arrange(const SectionGrid& grid) {
    placeGauges(gauges_, grid);
    double top = grid.rowsTop;
    for (RuledIndexRow* row : rows_) {
        top = placeRow(*row, top, grid);
    }
}

}  // namespace kestro
