#include "tests/core/engine/telemetry_engine_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST_F(TelemetryEngineTest, NamesTheMachineByBrandAndModel) {
    EXPECT_EQ(engine().macModel(), "Apple M2 Pro (Mac14,9)");
}

TEST_F(TelemetryEngineTest, NamesTheMachineByModelOnlyWithoutABrand) {
    mac.systemControl.texts.erase("machdep.cpu.brand_string");
    EXPECT_EQ(engine().macModel(), "Mac14,9");

    destroyEngine();
    mac.systemControl.texts["machdep.cpu.brand_string"] = "";
    EXPECT_EQ(engine().macModel(), "Mac14,9");
}

TEST_F(TelemetryEngineTest, HasNoNameForAMachineWithoutBrandAndModel) {
    mac.systemControl.texts.clear();

    EXPECT_EQ(engine().macModel(), "");
}

TEST_F(TelemetryEngineTest, NamesTheSystemWithAllThreeNumbers) {
    EXPECT_EQ(engine().macOSVersion(), "macOS 14.5.0");

    destroyEngine();
    mac.processInfo.version = {"Debian GNU/Linux", 12, 0, 7};
    EXPECT_EQ(engine().macOSVersion(), "Debian GNU/Linux 12.0.7");
}

TEST_F(TelemetryEngineTest, DropsTheMicrosecondsOfTheBootTime) {
    mac.systemControl.boot = TimeValue{1'700'000'000, 999'999};

    EXPECT_EQ(engine().bootTime(), WallTime(1'700'000'000s));
}

TEST_F(TelemetryEngineTest, SubstitutesTheCurrentTimeForAnUnknownBootTime) {
    mac.systemControl.boot = std::nullopt;
    mac.advance(1min);

    EXPECT_EQ(engine().bootTime(), SimulatedClock::startOfWall + 1min);
    EXPECT_EQ(engine().uptimeString(), "0h 0m");
}

TEST_F(TelemetryEngineTest, ToleratesAnImplausibleBootTime) {
    mac.systemControl.boot = TimeValue{std::numeric_limits<std::int64_t>::max(), 0};
    EXPECT_EQ(engine().uptimeString(), "0h 0m");

    destroyEngine();
    mac.systemControl.boot = TimeValue{std::numeric_limits<std::int64_t>::min(), 0};
    EXPECT_EQ(engine().bootTime(), WallTime());
}

TEST_F(TelemetryEngineTest, FormatsTheUptime) {
    EXPECT_EQ(uptimeAfter(0s), "0h 0m");
    EXPECT_EQ(uptimeAfter(59s), "0h 0m");
    EXPECT_EQ(uptimeAfter(5h + 3min + 59s), "5h 3m");
    EXPECT_EQ(uptimeAfter(86399s), "23h 59m");
    EXPECT_EQ(uptimeAfter(86400s), "1d 0h 0m");
    EXPECT_EQ(uptimeAfter(48h + 41min), "2d 0h 41m");
    EXPECT_EQ(uptimeAfter(24h * 400), "400d 0h 0m");
}

TEST_F(TelemetryEngineTest, MeasuresTheUptimeByTheBootClock) {
    mac.clock.uptimeAtStart = 2h;
    mac.systemControl.boot = TimeValue{0, 0};
    EXPECT_EQ(engine().uptimeString(), "2h 0m");

    mac.clock.setWall(mac.clock.wallNow() + 24h * 20'000);
    mac.advance(5min);

    EXPECT_EQ(engine().uptimeString(), "2h 5m");
}

TEST_F(TelemetryEngineTest, NeverReportsANegativeUptime) {
    EXPECT_EQ(uptimeAfter(-3h), "0h 0m");
}

TEST_F(TelemetryEngineTest, FormatsTemperaturesInTheChosenUnit) {
    settings.temperatureUnit.set(TemperatureUnit::celsius);
    EXPECT_EQ(engine().formatTemp(48.04), "48.0°C");

    settings.temperatureUnit.set(TemperatureUnit::fahrenheit);
    EXPECT_EQ(engine().formatTemp(48), "118.4°F");
}

TEST_F(TelemetryEngineTest, FormatsFanSpeedsInTheChosenUnit) {
    settings.fanSpeedUnit.set(FanSpeedUnit::kRPM);
    EXPECT_EQ(engine().formatFanRPM(1420.9), "1.4k");
    EXPECT_EQ(engine().formatFanRPM(999.9), "999");

    settings.fanSpeedUnit.set(FanSpeedUnit::rawRPM);
    EXPECT_EQ(engine().formatFanRPM(850.2), "850 RPM");
}

TEST_F(TelemetryEngineTest, FormatsANaNFanSpeedAsZero) {
    settings.fanSpeedUnit.set(FanSpeedUnit::kRPM);

    EXPECT_EQ(engine().formatFanRPM(std::numeric_limits<double>::quiet_NaN()), "0");
    EXPECT_FALSE(engine().formatFanRPM(std::numeric_limits<double>::infinity()).empty());
}

}  // namespace
}  // namespace kestro
