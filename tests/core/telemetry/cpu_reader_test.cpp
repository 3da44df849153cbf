#include "tests/core/telemetry/cpu_reader_fixture.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using test::CPUReaderTest;

void expectIdle(const CPUTelemetry& record) {
    EXPECT_EQ(record.totalUsage, 0);
    EXPECT_EQ(record.systemUsage, 0);
    EXPECT_EQ(record.userUsage, 0);
    EXPECT_EQ(record.idleUsage, 100);
    EXPECT_EQ(record.cluster0Usage, 0);
    EXPECT_EQ(record.cluster1Usage, 0);
}

TEST_F(CPUReaderTest, ReadsAsIdleOnTheFirstSample) {
    const CPUTelemetry record = reader().readCPU();

    expectIdle(record);
    EXPECT_TRUE(record.coreLoads.empty());
    EXPECT_EQ(record.coreCount, 4);
    EXPECT_EQ(record.cluster0Count, 2);
    EXPECT_EQ(record.cluster1Count, 2);
    EXPECT_EQ(record.cluster0Name, "Performance");
    EXPECT_EQ(record.cluster1Name, "Efficiency");
}

TEST_F(CPUReaderTest, MeasuresTheLoadBetweenTwoSamples) {
    reader().readCPU();
    mac.machHost.addTicks(0, {30, 10, 60, 0});
    mac.machHost.addTicks(1, {10, 10, 80, 0});
    mac.machHost.addTicks(2, {0, 0, 100, 0});
    mac.machHost.addTicks(3, {50, 50, 0, 0});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_DOUBLE_EQ(record.totalUsage, 40);
    EXPECT_DOUBLE_EQ(record.userUsage, 22.5);
    EXPECT_DOUBLE_EQ(record.systemUsage, 17.5);
    EXPECT_DOUBLE_EQ(record.idleUsage, 60);
    EXPECT_DOUBLE_EQ(record.cluster0Usage, 30);
    EXPECT_DOUBLE_EQ(record.cluster1Usage, 50);
    EXPECT_EQ(record.coreCount, 4);
    ASSERT_EQ(record.coreLoads.size(), 4u);
    EXPECT_EQ(record.coreLoads[0], (CoreLoad{0, "Super", true, 40}));
    EXPECT_EQ(record.coreLoads[1], (CoreLoad{1, "Super", true, 20}));
    EXPECT_EQ(record.coreLoads[2], (CoreLoad{2, "Perf", false, 0}));
    EXPECT_EQ(record.coreLoads[3], (CoreLoad{3, "Perf", false, 100}));
}

TEST_F(CPUReaderTest, ReadsIdenticalCountersAsIdle) {
    reader().readCPU();

    const CPUTelemetry record = reader().readCPU();

    expectIdle(record);
    ASSERT_EQ(record.coreLoads.size(), 4u);
    for (const CoreLoad& load : record.coreLoads) {
        EXPECT_EQ(load.usagePercentage, 0);
    }
}

TEST_F(CPUReaderTest, ReadsACoreThatWasNeverIdleAsFullyBusy) {
    reader().readCPU();
    mac.machHost.addTicks(1, {7, 3, 0, 0});

    EXPECT_EQ(reader().readCPU().coreLoads[1].usagePercentage, 100);
}

TEST_F(CPUReaderTest, CountsNiceTicksInEachCoreButNotInTheTotal) {
    reader().readCPU();
    addToEveryCore({0, 0, 0, 50});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.totalUsage, 0);
    EXPECT_EQ(record.idleUsage, 0);
    EXPECT_EQ(record.cluster0Usage, 100);
    for (const CoreLoad& load : record.coreLoads) {
        EXPECT_EQ(load.usagePercentage, 100);
    }
}

TEST_F(CPUReaderTest, KeepsNiceTicksInTheDenominatorOfTheTotal) {
    reader().readCPU();
    addToEveryCore({25, 0, 25, 50});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_DOUBLE_EQ(record.totalUsage, 25);
    EXPECT_DOUBLE_EQ(record.coreLoads[0].usagePercentage, 75);
}

TEST_F(CPUReaderTest, MeasuresAcrossCountersThatWrap) {
    mac.machHost.cores.assign(1, {0xFFFFFFF0, 0x7FFFFFF0, 0xFFFFFFFF, 0});
    reader().readCPU();
    mac.machHost.addTicks(0, {30, 30, 40, 0});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_DOUBLE_EQ(record.totalUsage, 60);
    EXPECT_DOUBLE_EQ(record.idleUsage, 40);
}

TEST_F(CPUReaderTest, ClampsTheResultOfCountersThatWentBackwards) {
    useCores(1);
    reader().readCPU();
    mac.machHost.cores[0] = {1200, 1000, 900, 1000};

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.coreLoads[0].usagePercentage, 100);
    EXPECT_EQ(record.totalUsage, 100);
    EXPECT_EQ(record.idleUsage, 0);
}

TEST_F(CPUReaderTest, ReadsANegativeTotalAsIdle) {
    useCores(1);
    reader().readCPU();
    mac.machHost.cores[0] = {900, 1000, 900, 1000};

    const CPUTelemetry record = reader().readCPU();

    expectIdle(record);
    EXPECT_EQ(record.coreLoads[0].usagePercentage, 0);
}

TEST_F(CPUReaderTest, ReadsAFailedCallAsIdleAndMeasuresAcrossTheGap) {
    reader().readCPU();
    addToEveryCore({50, 0, 50, 0});
    mac.machHost.processorInfoFailure.times(1);

    const CPUTelemetry failed = reader().readCPU();
    addToEveryCore({0, 0, 100, 0});
    const CPUTelemetry next = reader().readCPU();

    expectIdle(failed);
    EXPECT_TRUE(failed.coreLoads.empty());
    EXPECT_EQ(failed.coreCount, 0);
    EXPECT_EQ(failed.cluster0Name, "Performance");
    EXPECT_EQ(failed.cluster0Count, 2);
    EXPECT_EQ(failed.cluster1Count, 2);
    EXPECT_DOUBLE_EQ(next.totalUsage, 25);
}

TEST_F(CPUReaderTest, TreatsAResultWithoutAnArrayAsAFailure) {
    reader().readCPU();
    mac.machHost.answersWithoutArray = true;

    const CPUTelemetry record = reader().readCPU();

    expectIdle(record);
    EXPECT_EQ(record.coreCount, 0);
    EXPECT_EQ(mac.machHost.outstandingArrays(), 1);
}

TEST_F(CPUReaderTest, HoldsOneArrayNoMatterHowOftenItReads) {
    for (int sample = 0; sample < 100; ++sample) {
        addToEveryCore({1, 1, 8, 0});
        reader().readCPU();
    }

    EXPECT_EQ(mac.machHost.outstandingArrays(), 1);
    EXPECT_EQ(mac.machHost.wrongDeallocations(), 0);
}

TEST_F(CPUReaderTest, ReplacesTheArrayEvenWithoutProcessors) {
    reader().readCPU();
    useCores(0);

    const CPUTelemetry none = reader().readCPU();
    reader().readCPU();

    expectIdle(none);
    EXPECT_TRUE(none.coreLoads.empty());
    EXPECT_EQ(none.coreCount, 0);
    EXPECT_EQ(mac.machHost.outstandingArrays(), 1);
    EXPECT_EQ(mac.machHost.wrongDeallocations(), 0);
}

TEST_F(CPUReaderTest, ComparesOnlyCoresPresentInBothSamples) {
    reader().readCPU();
    useCores(6);
    addToEveryCore({50, 0, 50, 0});

    const CPUTelemetry grown = reader().readCPU();
    useCores(3);
    const CPUTelemetry shrunk = reader().readCPU();

    EXPECT_EQ(grown.coreLoads.size(), 4u);
    EXPECT_EQ(grown.coreCount, 6);
    EXPECT_DOUBLE_EQ(grown.totalUsage, 50);
    EXPECT_EQ(shrunk.coreLoads.size(), 3u);
    EXPECT_EQ(shrunk.coreCount, 3);
}

TEST_F(CPUReaderTest, DoesNotReadBeyondTheArrayWhenMoreProcessorsAreReported) {
    mac.machHost.countedInExcess = 60;
    reader().readCPU();

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.coreLoads.size(), 4u);
    EXPECT_EQ(record.coreCount, 64);
}

TEST_F(CPUReaderTest, FillsAnExistingRecordLikeANewOne) {
    CPUTelemetry record = CPUTelemetry::initial();
    record.coreLoads.assign(40, {99, "left over", true, 77});
    record.totalUsage = 77;

    reader().readCPU(record);
    EXPECT_TRUE(record.coreLoads.empty());
    expectIdle(record);
    record.coreLoads.assign(40, {99, "left over", true, 77});
    addToEveryCore({0, 20, 80, 0});
    reader().readCPU(record);

    ASSERT_EQ(record.coreLoads.size(), 4u);
    EXPECT_EQ(record.coreLoads[3], (CoreLoad{3, "Perf", false, 20}));
    EXPECT_DOUBLE_EQ(record.systemUsage, 20);
}

}  // namespace
}  // namespace kestro
