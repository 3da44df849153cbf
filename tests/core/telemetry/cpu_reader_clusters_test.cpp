#include "tests/core/telemetry/cpu_reader_fixture.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using test::CPUReaderTest;

TEST_F(CPUReaderTest, SplitsTheCoresByTheSizeOfTheFirstCluster) {
    mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 4;
    mac.systemControl.integers["hw.perflevel1.physicalcpu"] = 6;
    useCores(10);
    reader().readCPU();
    addToEveryCore({0, 0, 100, 0});
    mac.machHost.addTicks(9, {150, 150, 0, 0});

    const CPUTelemetry record = reader().readCPU();

    ASSERT_EQ(record.coreLoads.size(), 10u);
    for (const CoreLoad& load : record.coreLoads) {
        EXPECT_EQ(load.isSuperCluster, load.id < 4);
        EXPECT_EQ(load.clusterName, load.id < 4 ? "Super" : "Perf");
    }
    EXPECT_EQ(record.cluster0Usage, 0);
    EXPECT_DOUBLE_EQ(record.cluster1Usage, 75.0 / 6);
}

TEST_F(CPUReaderTest, ReportsTheTotalForAnEmptySecondCluster) {
    mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 40;
    reader().readCPU();
    addToEveryCore({20, 10, 60, 10});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_DOUBLE_EQ(record.totalUsage, 30);
    EXPECT_DOUBLE_EQ(record.cluster0Usage, 40);
    EXPECT_DOUBLE_EQ(record.cluster1Usage, 30);
    for (const CoreLoad& load : record.coreLoads) {
        EXPECT_TRUE(load.isSuperCluster);
    }
}

TEST_F(CPUReaderTest, LeavesCoresThatWereNotOnlineOutOfTheMeans) {
    mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 4;
    mac.systemControl.integers["hw.perflevel1.physicalcpu"] = 2;
    useCores(6);
    identifyCores();
    reader().readCPU();
    mac.machHost.addTicks(0, {100, 0, 0, 0});
    mac.machHost.addTicks(1, {100, 0, 0, 0});
    mac.machHost.addTicks(4, {0, 0, 100, 0});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_DOUBLE_EQ(record.cluster0Usage, 100);
    EXPECT_DOUBLE_EQ(record.cluster1Usage, 0);
    EXPECT_NEAR(record.totalUsage, 200.0 / 3, 1e-9);
    EXPECT_EQ(record.coreCount, 6);
    EXPECT_EQ(record.cluster0Count, 4);
}

TEST_F(CPUReaderTest, AClusterThatIsOfflineAsAWholeIsNotBusy) {
    identifyCores();
    reader().readCPU();
    mac.machHost.addTicks(0, {100, 0, 0, 0});
    mac.machHost.addTicks(1, {100, 0, 0, 0});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.totalUsage, 100);
    EXPECT_EQ(record.cluster0Usage, 100);
    EXPECT_EQ(record.cluster1Usage, 0);
}

TEST_F(CPUReaderTest, CountsEveryCoreInTheMeansOfAHostThatDoesNotIdentifyThem) {
    reader().readCPU();
    mac.machHost.addTicks(0, {100, 0, 0, 0});
    mac.machHost.addTicks(2, {50, 0, 50, 0});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_DOUBLE_EQ(record.cluster0Usage, 50);
    EXPECT_DOUBLE_EQ(record.cluster1Usage, 25);
}

TEST_F(CPUReaderTest, PassesOnTheKernelsNumbersAndWhichCoresAreOnline) {
    mac.machHost.identities = {{4, true}, {5, false}, {0, true}, {1, true}};
    reader().readCPU();
    addToEveryCore({10, 0, 90, 0});

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.coreLoads[0], (CoreLoad{0, "Super", true, 10, 4, true}));
    EXPECT_EQ(record.coreLoads[1], (CoreLoad{1, "Super", true, 10, 5, false}));
    EXPECT_EQ(record.coreLoads[3].number(), 1);
}

TEST_F(CPUReaderTest, NumbersCoresByPositionWithoutTheKernelsNumbers) {
    reader().readCPU();

    EXPECT_EQ(reader().readCPU().coreLoads[3].number(), 3);
}

TEST_F(CPUReaderTest, MeasuresAcrossANewArrangement) {
    mac.machHost.cores = {{100, 0, 100, 0}, {500, 0, 500, 0}};
    mac.machHost.identities = {{0, true}, {1, true}};
    mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 2;
    mac.systemControl.integers.erase("hw.perflevel1.physicalcpu");
    reader().readCPU();

    mac.machHost.cores = {{150, 0, 150, 0}, {9000, 0, 1, 0}, {500, 0, 600, 0}};
    mac.machHost.identities = {{0, true}, {2, true}, {1, true}};
    mac.machHost.arrangement = 1;
    mac.systemControl.integers["hw.perflevel1.physicalcpu"] = 1;
    const CPUTelemetry record = reader().readCPU();
    addToEveryCore({100, 0, 0, 0});
    const CPUTelemetry next = reader().readCPU();

    EXPECT_EQ(record.clusterDescription(), "2 Performance + 1 Efficiency");
    ASSERT_EQ(record.coreLoads.size(), 3u);
    EXPECT_EQ(record.coreLoads[0].usagePercentage, 50);
    EXPECT_EQ(record.coreLoads[1].usagePercentage, 0) << "it was not measured before";
    EXPECT_EQ(record.coreLoads[2].usagePercentage, 0);
    EXPECT_DOUBLE_EQ(record.totalUsage, 25);
    EXPECT_DOUBLE_EQ(record.cluster0Usage, 50);
    EXPECT_EQ(next.coreLoads[1].usagePercentage, 100);
}

TEST_F(CPUReaderTest, TrimsTheNamesOfTheClusters) {
    mac.systemControl.texts["hw.perflevel0.name"] = " Super\n";
    mac.systemControl.texts["hw.perflevel1.name"] = "\tBig Little ";

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.cluster0Name, "Super");
    EXPECT_EQ(record.cluster1Name, "Big Little");
}

TEST_F(CPUReaderTest, KeepsTheDefaultsForMissingHardwareValues) {
    mac.systemControl.integers.clear();
    mac.systemControl.texts.clear();

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.cluster0Count, 6);
    EXPECT_EQ(record.cluster1Count, 12);
    EXPECT_EQ(record.cluster0Name, "Performance");
    EXPECT_EQ(record.cluster1Name, "Efficiency");
}

TEST_F(CPUReaderTest, AcceptsClustersOfASingleCore) {
    mac.systemControl.integers["hw.perflevel0.physicalcpu"] = 1;
    mac.systemControl.integers["hw.perflevel1.physicalcpu"] = 1;

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.cluster0Count, 1);
    EXPECT_EQ(record.cluster1Count, 1);
}

TEST_F(CPUReaderTest, KeepsTheDefaultsForImplausibleValues) {
    mac.systemControl.integers["hw.perflevel0.physicalcpu"] = -3;
    mac.systemControl.integers["hw.perflevel1.physicalcpu"] = 0;
    mac.systemControl.texts["hw.perflevel0.name"] = "";
    mac.systemControl.texts["hw.perflevel1.name"] = " \n";

    const CPUTelemetry record = reader().readCPU();

    EXPECT_EQ(record.cluster0Count, 6);
    EXPECT_EQ(record.cluster1Count, 12);
    EXPECT_EQ(record.cluster0Name, "Performance");
    EXPECT_EQ(record.cluster1Name, "Efficiency");
}

}  // namespace
}  // namespace kestro
