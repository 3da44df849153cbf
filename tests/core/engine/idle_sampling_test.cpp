#include "tests/core/engine/telemetry_engine_fixture.h"

#include <algorithm>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

/// An engine without windows, whose published properties are recorded.
class IdleSampling : public TelemetryEngineTest {
protected:
    IdleSampling() {
        settings.menubarDisplayMode.set(MenubarDisplayMode::memoryOnly);
        watchEverything();
    }

    /// How often a property is published within a duration.
    std::ptrdiff_t countWithin(std::chrono::seconds duration, const char* name) {
        published.clear();
        mac.advance(duration);
        return std::ranges::count(published, name);
    }
};

TEST_F(IdleSampling, ReadsOnlyFansAndMemoryForTheDefaultReadout) {
    engine().setReadoutSources({TelemetrySource::memory, TelemetrySource::fans});

    mac.advance(4s);

    EXPECT_EQ(published, (Names{"fans", "memory", "fans", "memory"}));
}

TEST_F(IdleSampling, KeepsEachModuleOfTheReadoutFresh) {
    for (const auto& [source, name] :
         {std::pair(TelemetrySource::thermals, "thermals"), std::pair(TelemetrySource::cpu, "cpu"),
          std::pair(TelemetrySource::network, "network")}) {
        engine().setReadoutSources({source});
        published.clear();

        mac.advance(4s);

        EXPECT_EQ(published, (Names{"fans", "memory", name, "fans", "memory", name}));
    }
}

TEST_F(IdleSampling, ReadsTheDiskAtMostEveryTenSeconds) {
    engine().setReadoutSources({TelemetrySource::disk});

    EXPECT_EQ(countWithin(2s, "disk"), 1);
    EXPECT_EQ(countWithin(8s, "disk"), 0);
    EXPECT_EQ(countWithin(2s, "disk"), 1);
    EXPECT_EQ(countWithin(100s, "disk"), 10);
}

TEST_F(IdleSampling, ReadsTheBatteryEveryThirtySeconds) {
    engine().setReadoutSources({TelemetrySource::power});

    EXPECT_EQ(countWithin(2s, "power"), 1);
    EXPECT_EQ(countWithin(27s, "power"), 0);
    EXPECT_EQ(countWithin(1s, "power"), 1);
    EXPECT_EQ(countWithin(300s, "power"), 10);
}

TEST_F(IdleSampling, StopsReadingAModuleThatLeavesTheReadout) {
    engine().setReadoutSources({TelemetrySource::network, TelemetrySource::disk});
    mac.advance(20s);

    engine().setReadoutSources({TelemetrySource::disk});

    EXPECT_EQ(countWithin(20s, "network"), 0);
}

TEST_F(IdleSampling, LeavesTheHistoriesAlone) {
    engine().setReadoutSources({TelemetrySource::cpu, TelemetrySource::network});

    EXPECT_EQ(countWithin(20s, "cpuHistory"), 0);
    EXPECT_EQ(countWithin(20s, "netDownHistory"), 0);
}

TEST_F(IdleSampling, MeasuresTrafficOverOneTickAfterAPause) {
    mac.freeze();
    auto& interfaces = mac.networkInterfaces;
    interfaces.entries = {SimulatedNetworkInterfaces::link("en0", 1000, 1000)};
    engine().sampleFull();
    mac.advance(1h);
    interfaces.entries = {SimulatedNetworkInterfaces::link("en0", 36'001'000, 1000)};

    engine().setReadoutSources({TelemetrySource::network});
    mac.advance(2s);
    EXPECT_FALSE(engine().measured().rates) << "an average over an hour";
    interfaces.entries = {SimulatedNetworkInterfaces::link("en0", 36'005'000, 1000)};
    mac.advance(2s);

    EXPECT_TRUE(engine().measured().rates);
    EXPECT_DOUBLE_EQ(engine().network.get().downloadBytesPerSec, 2000);
}

}  // namespace
}  // namespace kestro
