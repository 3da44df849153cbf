#pragma once

#include "core/telemetry/cpu_telemetry.h"
#include "core/telemetry/disk_telemetry.h"
#include "core/telemetry/fan_telemetry.h"
#include "core/telemetry/memory_telemetry.h"
#include "core/telemetry/network_telemetry.h"
#include "core/telemetry/power_telemetry.h"
#include "core/telemetry/thermal_telemetry.h"

#include <QString>

#include <optional>
#include <vector>

namespace kestro {

/// The contents of the popover's blocks, computed only from the records. Texts are plain.

/// The load of one core cluster.
struct ClusterContent {
    QString label;
    QString value;
    double fraction = 0;  ///< 0..1

    friend bool operator==(const ClusterContent&, const ClusterContent&) = default;
};

struct ComputeContent {
    QString total;
    ClusterContent first;
    std::optional<ClusterContent> second;  ///< with one kind of core its busiest; absent: a single core

    friend bool operator==(const ComputeContent&, const ComputeContent&) = default;
};

/// Without figures and fractions while the load is not measured yet.
ComputeContent computeContent(const CPUTelemetry& cpu, bool isMeasured);

struct MemoryContent {
    QString percent;
    QString amounts;

    friend bool operator==(const MemoryContent&, const MemoryContent&) = default;
};

MemoryContent memoryContent(const MemoryTelemetry& memory);

/// The heading of the cooling block, which depends on the number of fans.
struct CoolingHeading {
    QString text;
    QString symbol;

    friend bool operator==(const CoolingHeading&, const CoolingHeading&) = default;
};

CoolingHeading coolingHeading(std::size_t fanCount);

/// The label beside a fan's symbol. In three columns there is no room for the word before a number: "#5".
QString fanLabel(const QString& name, std::size_t fanCount);

/// Whether to show the processor's temperature as critical: measured and above 80.0 °C.
bool isCriticalTemperature(const ThermalTelemetry& thermals, bool isMeasured);

/// A rate in bytes per second, or its placeholder while it is not measured yet.
QString rateText(double bytesPerSecond, bool isMeasured);

QString freeSpaceText(const DiskTelemetry& disk);

QString batteryText(const PowerTelemetry& power);

}  // namespace kestro
