#include "core/telemetry/memory_reader.h"

#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

class MemoryReaderTest : public testing::Test {
protected:
    MemoryReaderTest() {
        mac.freeze();
        mac.machHost.statistics = {
            .freeCount = 100, .activeCount = 40, .inactiveCount = 30, .wireCount = 20, .compressorPageCount = 10};
        mac.machHost.pageSize = 4096;
        mac.processInfo.memory = 1'000'000;
        mac.systemControl.swap = SwapUsage{.total = 2000, .used = 500};
    }

    MemoryTelemetry read() { return MemoryReader(mac.machHost, mac.systemControl, mac.processInfo).read(); }

    std::string pressureAtLevel(std::int32_t level) {
        mac.systemControl.integers["kern.memorystatus_vm_pressure_level"] = level;
        return read().pressureLevel;
    }

    SimulatedMac mac;
};

TEST_F(MemoryReaderTest, MultipliesThePageCountsByThePageSize) {
    const MemoryTelemetry record = read();

    EXPECT_EQ(record.totalBytes, 1'000'000u);
    EXPECT_EQ(record.activeBytes, 40u * 4096);
    EXPECT_EQ(record.wiredBytes, 20u * 4096);
    EXPECT_EQ(record.compressedBytes, 10u * 4096);
    EXPECT_EQ(record.inactiveBytes, 30u * 4096);
    EXPECT_EQ(record.freeBytes, 100u * 4096);
    EXPECT_EQ(record.usedBytes, 70u * 4096);
    EXPECT_EQ(record.swapUsedBytes, 500u);
    EXPECT_EQ(record.swapTotalBytes, 2000u);
    EXPECT_EQ(record.pressureLevel, "Normal");
}

TEST_F(MemoryReaderTest, SupportsMoreThanThirtyTwoBits) {
    mac.machHost.statistics.activeCount = 0xFFFFFFFF;
    mac.machHost.statistics.wireCount = 0xFFFFFFFF;

    EXPECT_EQ(read().usedBytes, (0xFFFFFFFFull * 2 + 10) * 4096);
}

TEST_F(MemoryReaderTest, DoesNotClampUsedMemoryToTheTotal) {
    mac.processInfo.memory = 4096;

    const MemoryTelemetry record = read();

    EXPECT_GT(record.usedBytes, record.totalBytes);
    EXPECT_DOUBLE_EQ(record.usedPercentage(), 7000);
}

TEST_F(MemoryReaderTest, ReadsAllMemoryAsFreeWithoutStatistics) {
    mac.machHost.statisticsFailure.always();
    mac.systemControl.integers["kern.memorystatus_vm_pressure_level"] = 4;

    MemoryTelemetry expected;
    expected.totalBytes = 1'000'000;
    expected.freeBytes = 1'000'000;

    EXPECT_EQ(read(), expected);
}

TEST_F(MemoryReaderTest, QueriesTheConstantsOnlyOnce) {
    MemoryReader reader(mac.machHost, mac.systemControl, mac.processInfo);
    mac.processInfo.memory = 5;
    mac.machHost.pageSize = 1;

    const MemoryTelemetry record = reader.read();

    EXPECT_EQ(record.totalBytes, 1'000'000u);
    EXPECT_EQ(record.activeBytes, 40u * 4096);
}

TEST_F(MemoryReaderTest, AssumesPagesOfSixteenKibibytesByDefault) {
    mac.machHost.pageSizeFailure.always();

    EXPECT_EQ(read().activeBytes, 40u * 16384);
}

TEST_F(MemoryReaderTest, ReadsNoSwapAsZeros) {
    mac.systemControl.swap = SwapUsage{};

    const MemoryTelemetry record = read();

    EXPECT_EQ(record.swapUsedBytes, 0u);
    EXPECT_EQ(record.swapTotalBytes, 0u);
    EXPECT_EQ(record.usedBytes, 70u * 4096);
}

TEST_F(MemoryReaderTest, AFailedSwapCallAffectsNothingElse) {
    MemoryTelemetry expected = read();
    expected.swapUsedBytes = 0;
    expected.swapTotalBytes = 0;
    mac.systemControl.swap = std::nullopt;

    EXPECT_EQ(read(), expected);
}

TEST_F(MemoryReaderTest, AFailedPressureCallReadsNormalAndAffectsNothingElse) {
    const MemoryTelemetry expected = read();
    mac.systemControl.integers.erase("kern.memorystatus_vm_pressure_level");

    EXPECT_EQ(read(), expected);
}

TEST_F(MemoryReaderTest, NamesThePressureLevels) {
    EXPECT_EQ(pressureAtLevel(1), "Normal");
    EXPECT_EQ(pressureAtLevel(2), "Warning");
    EXPECT_EQ(pressureAtLevel(4), "Critical");
    EXPECT_EQ(pressureAtLevel(3), "Normal");
    EXPECT_EQ(pressureAtLevel(0), "Normal");
    EXPECT_EQ(pressureAtLevel(-4), "Normal");
}

}  // namespace
}  // namespace kestro
