#include "ui/popover/popover_content.h"

#include "ui/format/record_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

TEST(ComputeContent, TruncatesToWholeNumbers) {
    CPUTelemetry cpu = CPUTelemetry::initial();
    cpu.totalUsage = 18.97;
    cpu.cluster0Usage = 24.99;
    cpu.cluster1Usage = 8.01;

    const ComputeContent content = computeContent(cpu, true);

    EXPECT_EQ(content.total, QStringLiteral("18% Total"));
    EXPECT_EQ(content.first.label, QStringLiteral("Performance"));
    EXPECT_EQ(content.first.value, QStringLiteral("24%"));
    EXPECT_DOUBLE_EQ(content.first.fraction, 0.2499);
    ASSERT_TRUE(content.second);
    EXPECT_EQ(content.second->label, QStringLiteral("Efficiency"));
    EXPECT_EQ(content.second->value, QStringLiteral("8%"));
}

TEST(ComputeContent, HasOneRowWhenAllCoresAreOfOneKind) {
    CPUTelemetry cpu = CPUTelemetry::initial();
    cpu.cluster0Count = 4;
    cpu.cluster1Count = 12;  // the reader's default, kept when the system reports no second kind
    cpu.coreCount = 4;
    EXPECT_FALSE(computeContent(cpu, true).second);

    cpu.coreCount = 8;
    EXPECT_TRUE(computeContent(cpu, true).second);
    cpu.cluster1Count = 0;
    EXPECT_FALSE(computeContent(cpu, true).second);
}

TEST(ComputeContent, ShowsTheBusiestCoreOfASingleKind) {
    CPUTelemetry cpu = CPUTelemetry::initial();
    cpu.cluster1Count = 0;
    cpu.coreLoads = {{0, "Super", true, 12}, {1, "Super", true, 71.6}, {2, "Super", true, 3}};

    const ComputeContent content = computeContent(cpu, true);

    ASSERT_TRUE(content.second);
    EXPECT_EQ(*content.second, (ClusterContent{QStringLiteral("Busiest Core"), QStringLiteral("71%"), 0.716}));
    cpu.coreLoads.resize(1);
    EXPECT_FALSE(computeContent(cpu, true).second);
}

TEST(MemoryContent, ShowsTheShareAndTheAmounts) {
    MemoryTelemetry memory;
    memory.totalBytes = 34'359'738'368;
    memory.usedBytes = 14'388'140'441;

    const MemoryContent content = memoryContent(memory);

    EXPECT_EQ(content.percent, QStringLiteral("41%"));
    EXPECT_EQ(content.amounts, QStringLiteral("13.4 GB of 32.0 GB"));
}

TEST(MemoryContent, ShowsZeroBeforeTheFirstSample) {
    EXPECT_EQ(memoryContent(MemoryTelemetry::initial()),
              (MemoryContent{QStringLiteral("0%"), QStringLiteral("0.0 GB of 0.0 GB")}));
}

TEST(CoolingHeading, DependsOnTheNumberOfFans) {
    const QString fanblades = QStringLiteral("fanblades");
    EXPECT_EQ(coolingHeading(0),
              (CoolingHeading{QStringLiteral("Acoustics & Thermals (Passive)"), QStringLiteral("leaf.fill")}));
    EXPECT_EQ(coolingHeading(1), (CoolingHeading{QStringLiteral("Fan RPM & Thermals"), fanblades}));
    EXPECT_EQ(coolingHeading(2), (CoolingHeading{QStringLiteral("Dual Fan RPM & Thermals"), fanblades}));
    EXPECT_EQ(coolingHeading(6), (CoolingHeading{QStringLiteral("Dual Fan RPM & Thermals"), fanblades}));
}

TEST(FanLabel, DropsItsWordOnlyInThreeColumns) {
    EXPECT_EQ(fanLabel(QStringLiteral("Fan #4"), 4), QStringLiteral("Fan #4"));
    EXPECT_EQ(fanLabel(QStringLiteral("Fan #5"), 5), QStringLiteral("#5"));
    EXPECT_EQ(fanLabel(QStringLiteral("Left Fan"), 6), QStringLiteral("Left Fan"));
}

TEST(IsCriticalTemperature, StartsStrictlyAboveEightyDegreesCelsius) {
    ThermalTelemetry thermals = ThermalTelemetry::initial();
    thermals.averageSoCTemp = 80.0;
    EXPECT_FALSE(isCriticalTemperature(thermals, true));
    thermals.averageSoCTemp = 80.1;
    EXPECT_TRUE(isCriticalTemperature(thermals, true));
    thermals.averageSoCTemp = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(isCriticalTemperature(thermals, true));
}

TEST(PowerSymbol, DistinguishesChargingExternalPowerAndBattery) {
    PowerTelemetry power = PowerTelemetry::initial();
    power.isCharging = true;
    power.isPluggedIn = true;
    EXPECT_EQ(powerSymbol(power), QStringLiteral("bolt.fill"));
    power.isCharging = false;
    EXPECT_EQ(powerSymbol(power), QStringLiteral("powerplug.fill"));
    power.isPluggedIn = false;
    EXPECT_EQ(powerSymbol(power), QStringLiteral("battery.100"));
}

TEST(FreeSpaceText, ShowsBinaryGigabytes) {
    DiskTelemetry disk = DiskTelemetry::initial();
    disk.freeBytes = 656'271'007'744;

    EXPECT_EQ(freeSpaceText(disk), QStringLiteral("611.2 GB Free"));
}

TEST(BatteryText, ShowsAWholeNumber) {
    PowerTelemetry power = PowerTelemetry::initial();
    power.percentage = 87.9;

    EXPECT_EQ(batteryText(power), QStringLiteral("87%"));
}

}  // namespace
}  // namespace kestro
