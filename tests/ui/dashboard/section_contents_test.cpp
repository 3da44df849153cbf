#include "tests/ui/controls/view_test.h"
#include "ui/dashboard/compute_section.h"
#include "ui/dashboard/io_section.h"
#include "ui/dashboard/memory_section.h"
#include "ui/dashboard/process_row.h"
#include "ui/dashboard/temperature_rows.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdint>

namespace kestro {
namespace {

constexpr std::uint64_t gigabyte = 1073741824;

TEST(StatusBadge, HasAColourForEachSummary) {
    EXPECT_EQ(statusInk("Cool"), Ink(KestroTheme::accentCool));
    EXPECT_EQ(statusInk("Nominal"), Ink(KestroTheme::accentNominal));
    EXPECT_EQ(statusInk("Elevated"), Ink(KestroTheme::accentWarning));
    EXPECT_EQ(statusInk("Critical"), Ink(KestroTheme::accentCritical));
    EXPECT_EQ(pressureInk("Normal"), Ink(KestroTheme::accentNominal));
    EXPECT_EQ(pressureInk("Warning"), Ink(KestroTheme::accentWarning));
    EXPECT_EQ(pressureInk("Critical"), Ink(KestroTheme::accentCritical));
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
