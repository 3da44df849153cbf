#pragma once

#include "core/telemetry/disk_telemetry.h"
#include "core/telemetry/memory_telemetry.h"
#include "ui/dashboard/dashboard_section.h"
#include "ui/widgets/metric_gauge.h"

#include <array>

namespace kestro {

/// The seven rows of the memory section: five kinds of memory, swap, and the volume.
std::array<RuledIndexContent, 7> memoryRows(const MemoryTelemetry& memory, const DiskTelemetry& disk,
                                            bool compact);

/// The gauges of memory and storage.
std::array<GaugeContent, 2> memoryGauges(const MemoryTelemetry& memory, const DiskTelemetry& disk,
                                         SectionTier tier);

/// The colour of a memory pressure level: "Normal", "Warning" or "Critical".
Ink pressureInk(const std::string& level);

/// Memory with its breakdown and swap, and the storage of the volume.
class MemorySection : public DashboardSection {
    Q_OBJECT

public:
    explicit MemorySection(const KestroServices& services, QWidget* parent = nullptr);

protected:
    void refresh() override;
    void arrange(const SectionGrid& grid) override;

private:
    const TelemetryEngine& engine_;
    std::array<MetricGauge*, 2> gauges_;
    std::array<RuledIndexRow*, 7> rows_;
};

}  // namespace kestro
