#include "tests/support/simulated_services.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST(SimulatedServices, ShowsALivelyMachineOnceItHasSettled) {
    SimulatedServices simulated;

    simulated.settle();

    const auto& engine = simulated.engine();
    EXPECT_NEAR(engine.cpu.get().totalUsage, 20, 12);
    EXPECT_GT(engine.cpu.get().cluster0Usage, engine.cpu.get().cluster1Usage);
    EXPECT_NEAR(engine.memory.get().usedPercentage(), 42, 2);
    EXPECT_NEAR(engine.thermals.get().averageSoCTemp, 50, 2);
    EXPECT_EQ(engine.fans.get().size(), 2u);
    EXPECT_GT(std::ranges::min(engine.cpuHistory.get()), 0);
    EXPECT_GT(std::ranges::min(engine.netDownHistory.get()), 0);
    EXPECT_GE(engine.topProcesses.get().size(), 5u);
    EXPECT_EQ(engine.uptimeString(), "2d 4h 41m");
}

TEST(SimulatedServices, SurvivesADayWithEverythingRunning) {
    SimulatedServices simulated;
    simulated.settings().fanProfile.set(FanProfile::custom);
    simulated.keepAwake().activate(KeepAwakeDuration::minutes15);

    simulated.advance(24h);

    EXPECT_EQ(simulated.mac.assertionsHeld(), 0);
    EXPECT_EQ(simulated.mac.machHost.outstandingArrays(), 0);
    EXPECT_EQ(simulated.mac.machHost.wrongDeallocations(), 0);
    EXPECT_EQ(simulated.mac.smc.malformedRecords(), 0);
    EXPECT_EQ(simulated.mac.runLoop.heldBackgroundTasks(), 0);
    EXPECT_EQ(simulated.engine().uptimeString(), "3d 4h 41m");
}

TEST(SimulatedServices, LetsATestArrangeTheMachineFirst) {
    SimulatedServices simulated([](SimulatedMac& mac) { mac.systemControl.texts["hw.model"] = "Mac99,1"; });

    EXPECT_EQ(simulated.engine().macModel(), "Apple M2 Pro (Mac99,1)");
}

TEST(SimulatedServices, ReleasesEverythingOnDestruction) {
    SimulatedServices simulated;
    simulated.settle();
    simulated.keepAwake().activate(KeepAwakeDuration::minutes15);

    simulated.objects.reset();
    simulated.advance(1h);

    EXPECT_EQ(simulated.mac.assertionsHeld(), 0);
    EXPECT_EQ(simulated.mac.smc.openConnections(), 0);
    EXPECT_TRUE(simulated.mac.runLoop.timerPeriods().empty());
}

}  // namespace
}  // namespace kestro
