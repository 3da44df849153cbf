#include "tests/ui/controls/view_test.h"
#include "ui/dashboard/activity_section.h"
#include "ui/dashboard/compute_section.h"
#include "ui/dashboard/cooling_section.h"
#include "ui/dashboard/io_section.h"
#include "ui/dashboard/memory_section.h"
#include "ui/dashboard/temperature_rows.h"

namespace kestro {
namespace {

constexpr std::uint64_t gigabyte = 1073741824;
constexpr MeasuredTemperatures all{true, true, true};

ThermalTelemetry thermals(double average, double peak, double battery, const char* state = "Nominal") {
    return {average, peak, battery, 20, state};
}

TEST(TemperatureRows, HaveLabelsAndDetailsWhenFull) {
    const auto rows = temperatureRows(thermals(52.44, 61.8, 31.6), all, false);

    EXPECT_EQ(rows[0].label, QStringLiteral("SoC Junction Temp"));
    EXPECT_EQ(rows[0].detail, QStringLiteral("Die Average"));
    EXPECT_EQ(rows[0].value, QStringLiteral("52.4°C"));
    EXPECT_EQ(rows[1].label, QStringLiteral("Peak Die Temp"));
    EXPECT_EQ(rows[1].detail, QStringLiteral("Hottest Core"));
    EXPECT_EQ(rows[2].label, QStringLiteral("Battery Pack Temp"));
    EXPECT_EQ(rows[2].detail, QStringLiteral("Cell Pack"));
    EXPECT_EQ(rows[3].label, QStringLiteral("Thermal Pressure"));
    EXPECT_EQ(rows[3].detail, QStringLiteral("Thermal State"));
    EXPECT_EQ(rows[3].value, QStringLiteral("Nominal"));
}

TEST(TemperatureRows, KeepOnlyTheDetailOfThermalPressureWhenCompact) {
    const auto rows = temperatureRows(thermals(52, 61, 31), all, true);

    EXPECT_TRUE(rows[0].detail.isEmpty());
    EXPECT_TRUE(rows[1].detail.isEmpty());
    EXPECT_TRUE(rows[2].detail.isEmpty());
    EXPECT_EQ(rows[3].detail, QStringLiteral("Thermal State"));
    EXPECT_EQ(rows[0].compactLabel, QStringLiteral("SoC Die"));
    EXPECT_EQ(rows[1].compactLabel, QStringLiteral("Peak Die"));
    EXPECT_EQ(rows[2].compactLabel, QStringLiteral("Battery"));
    EXPECT_EQ(rows[3].compactLabel, QStringLiteral("Pressure"));
}

TEST(TemperatureRows, ScaleTheirProgressUpToOne) {
    const auto rows = temperatureRows(thermals(52.5, 84, 25), all, false);
    EXPECT_DOUBLE_EQ(rows[0].progressFraction, 0.5);
    EXPECT_DOUBLE_EQ(rows[1].progressFraction, 0.8);
    EXPECT_DOUBLE_EQ(rows[2].progressFraction, 0.5);

    const auto hot = temperatureRows(thermals(120, 130, 70), all, false);
    EXPECT_EQ(hot[0].progressFraction, 1);
    EXPECT_EQ(hot[1].progressFraction, 1);
    EXPECT_EQ(hot[2].progressFraction, 1);
}

TEST(TemperatureRows, ChangeColourStrictlyAboveTheirThresholds) {
    const auto at = temperatureRows(thermals(85.0, 75.0, 42.0), all, false);
    EXPECT_EQ(at[0].valueTint, Ink(KestroTheme::accentCool));
    EXPECT_EQ(at[1].valueTint, Ink(KestroTheme::accentCool));
    EXPECT_EQ(at[2].valueTint, Ink(KestroTheme::accentNominal));

    const auto above = temperatureRows(thermals(85.1, 75.1, 42.1), all, false);
    EXPECT_EQ(above[0].valueTint, Ink(KestroTheme::accentCritical));
    EXPECT_EQ(above[1].valueTint, Ink(KestroTheme::accentWarning));
    EXPECT_EQ(above[2].valueTint, Ink(KestroTheme::accentWarning));

    EXPECT_EQ(temperatureRows(thermals(0, 90.0, 0), all, false)[1].valueTint, Ink(KestroTheme::accentWarning));
    EXPECT_EQ(temperatureRows(thermals(0, 90.1, 0), all, false)[1].valueTint, Ink(KestroTheme::accentCritical));
}

TEST(TemperatureRows, ShowTheSystemsThermalPressure) {
    const auto pressure = [](const char* state) {
        return temperatureRows(thermals(50, 50, 30, state), all, false)[3];
    };

    EXPECT_EQ(pressure("Nominal").progressFraction, 0.25);
    EXPECT_EQ(pressure("Nominal").valueTint, Ink(KestroTheme::accentNominal));
    EXPECT_EQ(pressure("Fair").progressFraction, 0.5);
    EXPECT_EQ(pressure("Fair").valueTint, Ink(KestroTheme::accentWarning));
    EXPECT_EQ(pressure("Serious").progressFraction, 0.9);
    EXPECT_EQ(pressure("Critical").progressFraction, 0.9);
    EXPECT_EQ(pressure("").progressFraction, 0.9);
}

TEST(StatusBadge, HasAColourForEachSummary) {
    EXPECT_EQ(statusInk("Cool"), Ink(KestroTheme::accentCool));
    EXPECT_EQ(statusInk("Nominal"), Ink(KestroTheme::accentNominal));
    EXPECT_EQ(statusInk("Elevated"), Ink(KestroTheme::accentWarning));
    EXPECT_EQ(statusInk("Critical"), Ink(KestroTheme::accentCritical));
    EXPECT_EQ(pressureInk("Normal"), Ink(KestroTheme::accentNominal));
    EXPECT_EQ(pressureInk("Warning"), Ink(KestroTheme::accentWarning));
    EXPECT_EQ(pressureInk("Critical"), Ink(KestroTheme::accentCritical));
}

std::vector<FanTelemetry> fans(int count) {
    std::vector<FanTelemetry> made;
    for (int i = 0; i < count; ++i) {
        made.push_back({i, i == 0 ? "Left Fan" : "Right Fan", 1420, 1400, 1200, 7300});
    }
    return made;
}

TEST(CoolingGauges, ShowTwoFans) {
    const auto gauges = coolingGauges(fans(2), thermals(50, 60, 30), all, {}, SectionTier::full);

    ASSERT_EQ(gauges.size(), 2U);
    EXPECT_EQ(gauges[0].title, QStringLiteral("Left Fan"));
    EXPECT_EQ(gauges[0].unit, QStringLiteral("RPM"));
    EXPECT_EQ(gauges[0].subtitle, QStringLiteral("of 7300 RPM"));
    EXPECT_EQ(gauges[0].minVal, 0);
    EXPECT_EQ(gauges[0].max, 7300);
    EXPECT_EQ(coolingGauges(fans(2), thermals(50, 60, 30), all, {}, SectionTier::compact)[1].subtitle,
              QStringLiteral("of 7300"));
}

TEST(CoolingGauges, ShowTheDieBesideOneFan) {
    const auto gauges = coolingGauges(fans(1), thermals(50, 60, 30), all, {}, SectionTier::full);

    ASSERT_EQ(gauges.size(), 2U);
    EXPECT_EQ(gauges[1].title, QStringLiteral("SoC Die"));
    EXPECT_EQ(gauges[1].unit, QStringLiteral("°C"));
    EXPECT_EQ(gauges[1].minVal, 20);
    EXPECT_EQ(gauges[1].max, 105);
    EXPECT_EQ(gauges[1].value, 50);
}

TEST(CoolingGauges, ShowAverageAndPeakWithoutFans) {
    const auto gauges = coolingGauges({}, thermals(50, 60, 30), all, {}, SectionTier::full);

    ASSERT_EQ(gauges.size(), 2U);
    EXPECT_EQ(gauges[0].value, 50);
    EXPECT_EQ(gauges[1].value, 60);
}

TEST(CoolingGauges, AreReplacedByRowsForMoreThanTwoFans) {
    EXPECT_TRUE(coolingGauges(fans(3), thermals(50, 60, 30), all, {}, SectionTier::full).empty());
}

TEST(CoolingGauges, ShowTheTargetsOfTheCurves) {
    const auto gauges = coolingGauges(fans(2), thermals(50, 60, 30), all, {1412.7, 1500}, SectionTier::full);

    EXPECT_EQ(gauges[0].subtitle, QStringLiteral("target 1412 RPM"));
    EXPECT_EQ(gauges[1].subtitle, QStringLiteral("target 1500 RPM"));
}

TEST(CoolingGauges, OmitAnUnknownMaximum) {
    auto unknown = fans(2);
    unknown[0].maxRPM = 0;

    EXPECT_TRUE(coolingGauges(unknown, thermals(50, 60, 30), all, {}, SectionTier::full)[0].subtitle.isEmpty());
}

TEST(FanRows, UseTwoColumnsAboveFour) {
    const auto four = fanRowAreas(4, 205, 112);
    const auto six = fanRowAreas(6, 205, 112);

    EXPECT_EQ(four.size(), 4U);
    EXPECT_EQ(four[1].left(), 0);
    EXPECT_EQ(four[1].height(), 28);
    EXPECT_EQ(six.size(), 6U);
    EXPECT_GT(six[1].left(), 100);
    EXPECT_EQ(six[1].top(), six[0].top());
}

TEST(FanRows, AreOmittedWhenTheyDoNotFit) {
    const auto many = fanRowAreas(40, 121.6, 92);

    EXPECT_LT(many.size(), 40U);
    EXPECT_LE(many.back().bottom(), 92);
}

TEST(ClusterRows, TakeTheirNamesFromTheRecord) {
    CPUTelemetry cpu = CPUTelemetry::initial();
    cpu.cluster0Usage = 24.9;
    cpu.cluster0Count = 8;
    cpu.cluster1Count = 1;

    const auto rows = clusterRows(cpu, true, false);

    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].label, QStringLiteral("Performance"));
    EXPECT_EQ(rows[0].compactLabel, QStringLiteral("Perf"));
    EXPECT_EQ(rows[0].value, QStringLiteral("24%"));
    EXPECT_EQ(rows[0].detail, QStringLiteral("8 cores"));
    EXPECT_EQ(rows[1].compactLabel, QStringLiteral("Eff"));
    EXPECT_EQ(rows[1].detail, QStringLiteral("1 core"));
    EXPECT_TRUE(clusterRows(cpu, true, true)[0].detail.isEmpty());
}

TEST(ClusterRows, OmitAMissingCluster) {
    CPUTelemetry empty = CPUTelemetry::initial();
    empty.cluster1Count = 0;
    CPUTelemetry uniform = CPUTelemetry::initial();
    uniform.cluster0Count = 4;
    uniform.coreCount = 4;

    EXPECT_EQ(clusterRows(empty, true, false).size(), 1U);
    EXPECT_EQ(clusterRows(uniform, true, false).size(), 1U);
}

MemoryTelemetry memory() {
    MemoryTelemetry made{};
    made.totalBytes = 32 * gigabyte;
    made.usedBytes = made.totalBytes * 42 / 100;
    made.activeBytes = 8 * gigabyte;
    made.freeBytes = 16 * gigabyte;
    made.swapUsedBytes = gigabyte / 2;
    made.swapTotalBytes = 2 * gigabyte;
    made.pressureLevel = "Normal";
    return made;
}

TEST(MemoryRows, ShowTheBreakdownSwapAndVolume) {
    const DiskTelemetry disk{100 * gigabyte, 66 * gigabyte, 34 * gigabyte, "Macintosh HD", "APFS"};

    const auto rows = memoryRows(memory(), disk, false);

    EXPECT_EQ(rows[0].label, QStringLiteral("Active"));
    EXPECT_EQ(rows[0].value, QStringLiteral("8.0 GB"));
    EXPECT_DOUBLE_EQ(rows[0].progressFraction, 0.25);
    EXPECT_EQ(rows[4].label, QStringLiteral("Free"));
    EXPECT_EQ(rows[4].progressTint, Ink::white(0.22));
    EXPECT_EQ(rows[5].value, QStringLiteral("0.5 of 2.0 GB"));
    EXPECT_EQ(rows[5].progressTint, Ink(KestroTheme::accentWarning));
    EXPECT_DOUBLE_EQ(rows[5].progressFraction, 0.25);
    EXPECT_EQ(rows[6].label, QStringLiteral("Macintosh HD"));
    EXPECT_EQ(rows[6].value, QStringLiteral("APFS"));
    EXPECT_DOUBLE_EQ(rows[6].progressFraction, 0.34);
    EXPECT_EQ(memoryRows(memory(), disk, true)[5].value, QStringLiteral("0.5 GB"));
}

TEST(MemoryRows, HaveNoProgressBeforeTheFirstSample) {
    const auto rows = memoryRows(MemoryTelemetry{}, DiskTelemetry{}, false);

    for (const RuledIndexContent& row : rows) {
        EXPECT_EQ(row.progressFraction, 0);
    }
    EXPECT_EQ(rows[5].value, QStringLiteral("0.0 GB"));
}

TEST(MemoryGauges, ShortenTheirTextsWhenTight) {
    const DiskTelemetry disk{1000 * gigabyte, static_cast<std::uint64_t>(611.2 * gigabyte), 388 * gigabyte, "",
                             ""};

    const auto full = memoryGauges(memory(), disk, SectionTier::full);
    const auto tight = memoryGauges(memory(), disk, SectionTier::tight);

    EXPECT_EQ(full[0].subtitle, QStringLiteral("13.4 of 32.0 GB"));
    EXPECT_EQ(full[1].subtitle, QStringLiteral("611.2 GB free"));
    EXPECT_EQ(tight[0].subtitle, QStringLiteral("13.4 GB"));
    EXPECT_EQ(tight[1].subtitle, QStringLiteral("611 GB"));
}

PowerTelemetry battery(double percent) {
    PowerTelemetry power = PowerTelemetry::initial();
    power.hasBattery = true;
    power.isPluggedIn = false;
    power.percentage = percent;
    power.timeRemainingMinutes = 252;
    return power;
}

TEST(IORows, ShowTheBatteryWithItsStatus) {
    const auto rows = ioRows(NetworkTelemetry{0, 0, "en0", "192.168.1.24"}, battery(87.6),
                             SystemPowerMode::balanced, "2d 4h 41m", false);

    EXPECT_EQ(rows[0].value, QStringLiteral("192.168.1.24"));
    EXPECT_EQ(rows[0].progressFraction, 0);
    EXPECT_EQ(rows[1].value, QStringLiteral("87%"));
    EXPECT_EQ(rows[1].detail, QStringLiteral("4h 12m remaining"));
    EXPECT_EQ(rows[1].progressTint, Ink(KestroTheme::accentNominal));
    EXPECT_EQ(rows[2].value, QStringLiteral("Normal"));
    EXPECT_EQ(rows[3].value, QStringLiteral("AUTO"));
    EXPECT_EQ(rows[4].value, QStringLiteral("2d 4h 41m"));
}

TEST(IORows, WarnAboutALowBattery) {
    const auto tint = [](double percent) {
        return ioRows({}, battery(percent), SystemPowerMode::balanced, "", false)[1].progressTint;
    };

    EXPECT_EQ(tint(20), Ink(KestroTheme::accentCritical));
    EXPECT_EQ(tint(20.1), Ink(KestroTheme::accentNominal));
}

TEST(IORows, ShowExternalPowerWithoutABattery) {
    const auto row = ioRows({}, PowerTelemetry::initial(), SystemPowerMode::balanced, "", false)[1];

    EXPECT_EQ(row.value, QStringLiteral("AC"));
    EXPECT_TRUE(row.detail.isEmpty());
    EXPECT_EQ(row.progressFraction, 0);
}

TEST(ProcessRowContents, ShowTheShareOfOneCoreOrOfTheMemory) {
    const ProcessInfoItem process{7, "clang", "/usr/bin/clang -O2", 38.26, 2048, "2.0 GB", true};

    const auto byCPU = processRowContent(process, false, 32 * gigabyte);
    const auto byMemory = processRowContent(process, true, 32 * gigabyte);

    EXPECT_EQ(byCPU.cpu, QStringLiteral("38.3"));
    EXPECT_NEAR(byCPU.share, 0.3826, 1e-9);
    EXPECT_NEAR(byMemory.share, 0.0625, 1e-9);
    EXPECT_EQ(byCPU.command, QStringLiteral("/usr/bin/clang -O2"));
    EXPECT_TRUE(byCPU.isSystem);
}

using ProcessRowTest = ViewTest;

TEST_F(ProcessRowTest, RepaintsOnlyTheColumnThatChanged) {
    ProcessRow row;
    row.setGeometry(300, 300, 205, 28);
    row.setColumns(44, 50);
    ProcessRowContent content;
    content.name = QStringLiteral("clang");
    content.cpu = QStringLiteral("38.2");
    content.memory = QStringLiteral("412 MB");
    row.setContent(content);
    row.show();
    QApplication::processEvents();
    PaintedRegion paints(row);

    content.cpu = QStringLiteral("38.4");
    row.setContent(content);
    QApplication::processEvents();

    EXPECT_EQ(paints.painted.boundingRect(), QRect(205 - 94, 0, 44, 14));
}

TEST(ProcessRowContents, LimitTheShareToOne) {
    const ProcessInfoItem busy{7, "busy", "busy", 780, 99999, "97.7 GB", false};

    EXPECT_EQ(processRowContent(busy, false, gigabyte).share, 1);
    EXPECT_EQ(processRowContent(busy, true, gigabyte).share, 1);
    EXPECT_EQ(processRowContent(busy, true, 0).share, 0);
}

}  // namespace
}  // namespace kestro
