#include "ui/format/record_text.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

CPUTelemetry machine(std::int64_t first, std::int64_t second, std::int64_t cores) {
    CPUTelemetry cpu = CPUTelemetry::initial();
    cpu.cluster0Count = first;
    cpu.cluster1Count = second;
    cpu.coreCount = cores;
    return cpu;
}

TEST(CoreClusters, AreTwoWhenThereAreMoreCoresThanInTheFirst) {
    EXPECT_TRUE(hasSecondCluster(machine(8, 4, 12)));
    EXPECT_FALSE(hasSecondCluster(machine(8, 0, 8)));
    EXPECT_FALSE(hasSecondCluster(machine(8, -1, 12)));
}

TEST(CoreClusters, AreOneWhenTheSecondIsOnlyAReadersDefault) {
    EXPECT_FALSE(hasSecondCluster(machine(2, 12, 2)));
    EXPECT_EQ(presentClusters(machine(2, 12, 2)), "2 Performance");
}

TEST(CoreClusters, FallBackToTheRecordWithoutACoreCount) {
    EXPECT_TRUE(hasSecondCluster(machine(8, 4, 0)));
    EXPECT_EQ(presentClusters(machine(8, 4, 0)), "8 Performance + 4 Efficiency");
}

}  // namespace
}  // namespace kestro
