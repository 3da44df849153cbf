#include "core/telemetry/measured_figures.h"

#include "tests/core/engine/engine_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;

class MeasuredFiguresTest : public EngineFixture {
protected:
    const MeasuredTemperatures& temperaturesWith(std::vector<SimulatedSensor> sensors) {
        mac.hidEventSystem.sensors = std::move(sensors);
        engine().sampleFull();
        return engine().measured().temperatures;
    }
};

TEST_F(MeasuredFiguresTest, AreNoneBeforeTheFirstSample) {
    EXPECT_EQ(engine().measured(), MeasuredFigures());
}

TEST_F(MeasuredFiguresTest, HaveNoLoadAndNoRatesBetweenTheFirstTwoReadings) {
    engine().setUIActive(true);

    EXPECT_FALSE(engine().measured().load);
    EXPECT_FALSE(engine().measured().rates);
    EXPECT_EQ(engine().cpu.get().totalUsage, 0) << "the record keeps its fallback";
    mac.advance(1s);
    EXPECT_TRUE(engine().measured().load);
    EXPECT_TRUE(engine().measured().rates);
}

TEST_F(MeasuredFiguresTest, HaveNoLoadThatAveragesOverALongPause) {
    settings.menubarDisplayMode.set(MenubarDisplayMode::memoryOnly);
    engine().setUIActive(true);
    mac.advance(10s);
    engine().setUIActive(false);
    mac.advance(1h);

    engine().setUIActive(true);

    EXPECT_FALSE(engine().measured().load);
    EXPECT_FALSE(engine().measured().rates);
    mac.advance(1s);
    EXPECT_TRUE(engine().measured().load);
    EXPECT_TRUE(engine().measured().rates);
}

TEST_F(MeasuredFiguresTest, HaveNoLoadBetweenTwoReadingsAtOnce) {
    engine().setUIActive(true);
    mac.advance(10s);

    engine().sampleFull();

    EXPECT_FALSE(engine().measured().load);
}

TEST_F(MeasuredFiguresTest, KeepTheirLoadAcrossTheOpeningAndClosingOfWindows) {
    engine().setReadoutSources({TelemetrySource::cpu});
    for (const PollingProfile profile : allCases<PollingProfile>()) {
        settings.pollingProfile.set(profile);
        engine().restartTimer();
        mac.advance(20'100ms);
        for (const bool isActive : {true, false, true, false}) {
            engine().setUIActive(isActive);
            for (int step = 0; step < 20; ++step) {
                mac.advance(310ms);
                EXPECT_TRUE(engine().measured().load) << rawValue(profile);
            }
        }
    }
}

TEST_F(MeasuredFiguresTest, AreKnownWhenARecordIsPublished) {
    bool isLoadMeasured = true;
    const auto subscription =
        engine().cpu.subscribe([&](const auto&) { isLoadMeasured = engine().measured().load; });

    engine().sampleFull();
    EXPECT_FALSE(isLoadMeasured);
    mac.advance(1s);
    engine().sampleFull();

    EXPECT_TRUE(isLoadMeasured);
}

TEST_F(MeasuredFiguresTest, HaveOnlyTheTemperaturesThatASensorGave) {
    EXPECT_EQ(temperaturesWith({{"PMU tdie1", 61.5}, {"battery", 31.0}}),
              (MeasuredTemperatures{true, true, true}));
    EXPECT_EQ(temperaturesWith({{"battery", 31.0}}), (MeasuredTemperatures{false, true, true}));
    EXPECT_EQ(temperaturesWith({{"NAND CH0 temp", 38.2}}), (MeasuredTemperatures{false, true, false}));
    EXPECT_EQ(temperaturesWith({{"PMU tdie1", 125.0}}), MeasuredTemperatures()) << "not a valid reading";
    EXPECT_EQ(temperaturesWith({}), MeasuredTemperatures());
}

TEST_F(MeasuredFiguresTest, HaveNoTemperaturesWithoutAListOfSensors) {
    EXPECT_TRUE(temperaturesWith({{"PMU tdie1", 61.5}}).averageSoC);
    mac.hidEventSystem.servicesFailure.always();

    engine().sampleFull();

    EXPECT_EQ(engine().measured().temperatures, MeasuredTemperatures());
    EXPECT_EQ(engine().thermals.get(), ThermalTelemetry::initial());
}

}  // namespace
}  // namespace kestro
