#include "tests/core/engine/engine_fixture.h"
#include "tests/support/allocation_counter.h"

#include <memory>
#include <string>

namespace kestro {
namespace {

using namespace std::chrono_literals;

class TickAllocationsTest : public EngineFixture {
protected:
    /// Allocations within a hundred seconds, after ten seconds of warm-up.
    std::int64_t allocationsInSteadyState() {
        const auto onFans = engine().fans.subscribe([this](const auto& newest) { seenFans += newest.size(); });
        const auto onCPU =
            engine().cpu.subscribe([this](const auto& newest) { seenCores += newest.coreLoads.size(); });
        const auto onMemory =
            engine().memory.subscribe([this](const auto& newest) { seenBytes += newest.usedBytes; });
        mac.advance(10s);
        const auto before = test::allocationsOfThisThread();
        mac.advance(100s);
        return test::allocationsOfThisThread() - before;
    }

    std::size_t seenFans = 0;
    std::size_t seenCores = 0;
    std::uint64_t seenBytes = 0;
};

TEST_F(TickAllocationsTest, TheCounterCounts) {
    const auto before = test::allocationsOfThisThread();

    const auto text = std::make_unique<std::string>(100, 'x');

    EXPECT_EQ(test::allocationsOfThisThread() - before, 2);
    EXPECT_EQ(text->size(), 100u);
}

TEST_F(TickAllocationsTest, ALightTickAllocatesNothing) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::tripleGlance);

    EXPECT_EQ(allocationsInSteadyState(), 0);
    EXPECT_EQ(seenFans, 2u * 55);
    EXPECT_EQ(seenCores, 12u * 54);
    EXPECT_GT(seenBytes, 0u);
}

TEST_F(TickAllocationsTest, ALightTickAllocatesNothingWithManyFansAndLongClusterNames) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::cpuOnly);
    mac.smc.setFans(std::vector<float>(10, 900.0F));
    mac.systemControl.texts["hw.perflevel0.name"] = "A cluster whose name is longer than any small buffer";

    EXPECT_EQ(allocationsInSteadyState(), 0);
    EXPECT_EQ(seenFans, 10u * 55);
}

TEST_F(TickAllocationsTest, ALightTickAllocatesNothingWithEverySourceButTheBatteryShown) {
    engine().setReadoutSources({TelemetrySource::memory, TelemetrySource::cpu, TelemetrySource::thermals,
                                TelemetrySource::fans, TelemetrySource::network, TelemetrySource::disk});
    std::int64_t seenSensors = 0;
    double seenTraffic = 0;
    const auto onThermals =
        engine().thermals.subscribe([&](const auto& newest) { seenSensors += newest.sensorCount; });
    const auto onNetwork =
        engine().network.subscribe([&](const auto& newest) { seenTraffic += newest.downloadBytesPerSec; });

    EXPECT_EQ(allocationsInSteadyState(), 0);
    EXPECT_EQ(seenSensors, 20 * 55);
    EXPECT_GT(seenTraffic, 0);
}

TEST_F(TickAllocationsTest, ALightTickAllocatesNothingWhileEveryCallFails) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::combined);
    mac.smc.informationFailure.always();
    mac.machHost.processorInfoFailure.always();
    mac.machHost.statisticsFailure.always();

    EXPECT_EQ(allocationsInSteadyState(), 0);
}

TEST_F(TickAllocationsTest, TheHistoriesOfAFullSampleAllocateNothing) {
    mac.hidEventSystem.servicesFailure.always();
    mac.networkInterfaces.interfacesFailure.always();
    mac.powerSources.failure.always();
    settings.showTopProcesses.set(false);
    engine().setUIActive(true);

    EXPECT_EQ(allocationsInSteadyState(), 0);
}

}  // namespace
}  // namespace kestro
