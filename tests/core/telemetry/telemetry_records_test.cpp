#include "core/telemetry/cpu_telemetry.h"
#include "core/telemetry/disk_telemetry.h"
#include "core/telemetry/fan_telemetry.h"
#include "core/telemetry/memory_telemetry.h"
#include "core/telemetry/network_telemetry.h"
#include "core/telemetry/power_telemetry.h"
#include "core/telemetry/thermal_telemetry.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

CPUTelemetry clusters(std::int64_t first, std::int64_t second) {
    CPUTelemetry record = CPUTelemetry::initial();
    record.cluster0Count = first;
    record.cluster1Count = second;
    return record;
}

PowerTelemetry onBattery(double percentage) {
    PowerTelemetry record = PowerTelemetry::initial();
    record.hasBattery = true;
    record.isPluggedIn = false;
    record.percentage = percentage;
    return record;
}

FanTelemetry fan(double current, double minimum, double maximum) {
    return {0, "Fan #1", current, current, minimum, maximum};
}

ThermalTelemetry peak(double celsius) {
    ThermalTelemetry record = ThermalTelemetry::initial();
    record.peakDieTemp = celsius;
    return record;
}

TEST(CPUTelemetry, StartsIdleWithTheNamesAndCountsOfALargeMachine) {
    const CPUTelemetry record = CPUTelemetry::initial();

    EXPECT_EQ(record.totalUsage, 0);
    EXPECT_EQ(record.systemUsage, 0);
    EXPECT_EQ(record.userUsage, 0);
    EXPECT_EQ(record.idleUsage, 100);
    EXPECT_TRUE(record.coreLoads.empty());
    EXPECT_EQ(record.cluster0Usage, 0);
    EXPECT_EQ(record.cluster1Usage, 0);
    EXPECT_EQ(record.cluster0Name, "Performance");
    EXPECT_EQ(record.cluster1Name, "Efficiency");
    EXPECT_EQ(record.cluster0Count, 6);
    EXPECT_EQ(record.cluster1Count, 12);
    EXPECT_EQ(record.coreCount, 18);
}

TEST(CPUTelemetry, ProvidesTheClusterUsagesUnderTheirAliases) {
    CPUTelemetry record;
    record.cluster0Usage = 12.5;
    record.cluster1Usage = 25;

    EXPECT_EQ(record.superClusterUsage(), 12.5);
    EXPECT_EQ(record.performanceClusterUsage(), 25);
}

TEST(CPUTelemetry, DescribesBothClusters) {
    EXPECT_EQ(clusters(6, 12).clusterDescription(), "6 Performance + 12 Efficiency");
    EXPECT_EQ(clusters(8, 1).clusterDescription(), "8 Performance + 1 Efficiency");
}

TEST(CPUTelemetry, DescribesOneClusterWhenTheSecondHasNoCores) {
    EXPECT_EQ(clusters(10, 0).clusterDescription(), "10 Performance");
    EXPECT_EQ(clusters(10, -1).clusterDescription(), "10 Performance");
}

TEST(MemoryTelemetry, StartsEmptyAndNormal) {
    const MemoryTelemetry record = MemoryTelemetry::initial();

    EXPECT_EQ(record.totalBytes + record.usedBytes + record.activeBytes + record.wiredBytes, 0u);
    EXPECT_EQ(record.compressedBytes + record.inactiveBytes + record.freeBytes, 0u);
    EXPECT_EQ(record.swapUsedBytes + record.swapTotalBytes, 0u);
    EXPECT_EQ(record.pressureLevel, "Normal");
}

TEST(MemoryTelemetry, ReportsTheUsedShareInPercent) {
    MemoryTelemetry record;
    record.totalBytes = 32;
    record.usedBytes = 12;

    EXPECT_DOUBLE_EQ(record.usedPercentage(), 37.5);
}

TEST(MemoryTelemetry, ReadsZeroPercentWithoutATotal) {
    MemoryTelemetry record;
    record.usedBytes = 12;

    EXPECT_EQ(record.usedPercentage(), 0);
}

TEST(DiskTelemetry, StartsEmptyWithTheFixedTexts) {
    const DiskTelemetry record = DiskTelemetry::initial();

    EXPECT_EQ(record.totalBytes + record.freeBytes + record.usedBytes, 0u);
    EXPECT_EQ(record.volumeName, "Macintosh HD");
    EXPECT_EQ(record.fileSystem, "APFS");
}

TEST(DiskTelemetry, ReportsTheUsedShareInPercentAndZeroWithoutATotal) {
    DiskTelemetry record = DiskTelemetry::initial();
    record.usedBytes = 250;

    EXPECT_EQ(record.usedPercentage(), 0);
    record.totalBytes = 1000;
    EXPECT_DOUBLE_EQ(record.usedPercentage(), 25);
}

TEST(NetworkTelemetry, StartsWithoutTrafficOnTheFirstInterface) {
    const NetworkTelemetry record = NetworkTelemetry::initial();

    EXPECT_EQ(record.uploadBytesPerSec, 0);
    EXPECT_EQ(record.downloadBytesPerSec, 0);
    EXPECT_EQ(record.primaryInterface, "en0");
    EXPECT_EQ(record.localIP, "--");
}

TEST(PowerTelemetry, StartsOnExternalPowerWithoutABattery) {
    const PowerTelemetry record = PowerTelemetry::initial();

    EXPECT_FALSE(record.hasBattery);
    EXPECT_FALSE(record.isCharging);
    EXPECT_TRUE(record.isPluggedIn);
    EXPECT_EQ(record.currentCapacity, 100);
    EXPECT_EQ(record.maxCapacity, 100);
    EXPECT_EQ(record.percentage, 100);
    EXPECT_EQ(record.condition, "Normal");
    EXPECT_FALSE(record.timeRemainingMinutes);
    EXPECT_EQ(record.statusDescription(), "AC Connected (No Battery)");
}

TEST(PowerTelemetry, ReportsChargingWithTheTruncatedPercentage) {
    PowerTelemetry record = onBattery(57.99);
    record.isCharging = true;
    record.isPluggedIn = true;

    EXPECT_EQ(record.statusDescription(), "Charging (57%)");
}

TEST(PowerTelemetry, ReportsFullyChargedWheneverPluggedInAndNotCharging) {
    PowerTelemetry record = onBattery(80);
    record.isPluggedIn = true;
    record.timeRemainingMinutes = 90;

    EXPECT_EQ(record.statusDescription(), "Fully Charged / On AC");
}

TEST(PowerTelemetry, ReportsTheRemainingTime) {
    PowerTelemetry record = onBattery(80);

    record.timeRemainingMinutes = 187;
    EXPECT_EQ(record.statusDescription(), "3h 7m remaining");
    record.timeRemainingMinutes = 61;
    EXPECT_EQ(record.statusDescription(), "1h 1m remaining");
    record.timeRemainingMinutes = 1;
    EXPECT_EQ(record.statusDescription(), "0h 1m remaining");
}

TEST(PowerTelemetry, ReportsDischargingWhileTheTimeIsUnknownOrZero) {
    PowerTelemetry record = onBattery(42.7);

    EXPECT_EQ(record.statusDescription(), "Discharging (42%)");
    record.timeRemainingMinutes = 0;
    EXPECT_EQ(record.statusDescription(), "Discharging (42%)");
    record.timeRemainingMinutes = -5;
    EXPECT_EQ(record.statusDescription(), "Discharging (42%)");
}

TEST(PowerTelemetry, ToleratesAnAbsurdPercentage) {
    EXPECT_EQ(onBattery(-0.4).statusDescription(), "Discharging (0%)");
    EXPECT_EQ(onBattery(1e20).statusDescription(), "Discharging (100000000000000000000%)");
}

TEST(ThermalTelemetry, StartsWithPlausibleReadings) {
    const ThermalTelemetry record = ThermalTelemetry::initial();

    EXPECT_EQ(record.averageSoCTemp, 45.0);
    EXPECT_EQ(record.peakDieTemp, 48.0);
    EXPECT_EQ(record.batteryTemp, 32.0);
    EXPECT_EQ(record.sensorCount, 0);
    EXPECT_EQ(record.thermalState, "Nominal");
}

TEST(ThermalTelemetry, SummarisesThePeakWithInclusiveThresholds) {
    EXPECT_EQ(peak(95.0).statusSummary(), "Critical");
    EXPECT_EQ(peak(94.99).statusSummary(), "Elevated");
    EXPECT_EQ(peak(80.0).statusSummary(), "Elevated");
    EXPECT_EQ(peak(79.99).statusSummary(), "Nominal");
    EXPECT_EQ(peak(60.0).statusSummary(), "Nominal");
    EXPECT_EQ(peak(59.99).statusSummary(), "Cool");
}

TEST(FanTelemetry, ReportsItsPositionAsAFraction) {
    EXPECT_DOUBLE_EQ(fan(2850, 1200, 7800).percentage(), 0.25);
    EXPECT_EQ(fan(1200, 1200, 7800).percentage(), 0);
    EXPECT_EQ(fan(7800, 1200, 7800).percentage(), 1);
}

TEST(FanTelemetry, StaysWithinZeroAndOne) {
    EXPECT_EQ(fan(9000, 1200, 7800).percentage(), 1);
    EXPECT_EQ(fan(0, 1200, 7800).percentage(), 0);
}

TEST(FanTelemetry, ReadsZeroForAnEmptyRange) {
    EXPECT_EQ(fan(1500, 1200, 1200).percentage(), 0);
    EXPECT_EQ(fan(1500, 2000, 1200).percentage(), 0);
}

TEST(FanTelemetry, ReadsZeroForANaNSpeed) {
    EXPECT_EQ(fan(std::numeric_limits<double>::quiet_NaN(), 1200, 7800).percentage(), 0);
}

}  // namespace
}  // namespace kestro
