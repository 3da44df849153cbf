#include "core/telemetry/thermal_reader.h"

#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

class ThermalReaderTest : public testing::Test {
protected:
    ThermalReaderTest() { mac.freeze(); }

    ThermalTelemetry readWith(std::vector<SimulatedSensor> sensors) {
        mac.hidEventSystem.sensors = std::move(sensors);
        return read();
    }
    ThermalTelemetry read() { return ThermalReader(mac.hidEventSystem, mac.processInfo).readThermals(); }

    SimulatedMac mac;
};

TEST_F(ThermalReaderTest, ReadsASingleDieSensor) {
    EXPECT_EQ(readWith({{"PMU tdie1", 61.5}}), (ThermalTelemetry{61.5, 61.5, 32.0, 1, "Nominal"}));
}

TEST_F(ThermalReaderTest, MatchesOnlyTemperatureSensors) {
    EXPECT_EQ(read().sensorCount, 20);
}

TEST_F(ThermalReaderTest, AveragesTheDieAndTheBatterySensors) {
    const auto record = readWith({{"PMU TDIE1", 60.0},
                                  {"SOC MTR", 44.0},
                                  {"cpu package", 46.0},
                                  {"Gas Gauge BATTERY", 30.0},
                                  {"battery 2", 34.0}});

    EXPECT_DOUBLE_EQ(record.averageSoCTemp, 50);
    EXPECT_DOUBLE_EQ(record.batteryTemp, 32);
    EXPECT_EQ(record.peakDieTemp, 60);
    EXPECT_EQ(record.sensorCount, 5);
}

TEST_F(ThermalReaderTest, TreatsASensorMatchingBothKindsAsABattery) {
    const auto record = readWith({{"SoC battery", 40.0}});

    EXPECT_EQ(record.batteryTemp, 40);
    EXPECT_EQ(record.averageSoCTemp, 50);
}

TEST_F(ThermalReaderTest, ReportsThePeakOfAllSensorsWhateverTheyMeasure) {
    EXPECT_EQ(readWith({{"battery", 35.0}, {"PMU tdie1", 70.0}}).peakDieTemp, 70);
    EXPECT_EQ(readWith({{"battery", 90.0}, {"PMU tdie1", 70.0}}).peakDieTemp, 90);

    const auto record = readWith({{"NAND CH0 temp", 81.0}, {"PMU tdie1", 70.0}, {"battery", 35.0}});
    EXPECT_EQ(record.peakDieTemp, 81);
    EXPECT_EQ(record.averageSoCTemp, 70);
    EXPECT_EQ(record.batteryTemp, 35);
}

TEST_F(ThermalReaderTest, RejectsReadingsAtAndBeyondTheBounds) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double reading : {125.0, 130.0, 10.0, 0.0, -40.0, nan}) {
        EXPECT_EQ(readWith({{"PMU tdie1", reading}}), (ThermalTelemetry{50.0, 50.0, 32.0, 1, "Nominal"}))
            << reading;
    }
    EXPECT_EQ(readWith({{"PMU tdie1", 124.9}}).peakDieTemp, 124.9);
    EXPECT_EQ(readWith({{"PMU tdie1", 10.1}}).peakDieTemp, 10.1);
}

TEST_F(ThermalReaderTest, CountsTheSensorsThatItSkips) {
    const auto record =
        readWith({{std::nullopt, 60.0}, {"PMU tdie1", std::nullopt}, {"PMU tdie2", 200.0}, {"PMU tdie3", 55.0}});

    EXPECT_EQ(record, (ThermalTelemetry{55.0, 55.0, 32.0, 4, "Nominal"}));
}

TEST_F(ThermalReaderTest, FallsBackToFiftyWithAnEmptyList) {
    EXPECT_EQ(readWith({}), (ThermalTelemetry{50.0, 50.0, 32.0, 0, "Nominal"}));
}

TEST_F(ThermalReaderTest, FallsBackToTheInitialRecordWithoutAClient) {
    mac.hidEventSystem.clientFailure.always();
    mac.processInfo.state = 3;

    EXPECT_EQ(read(), (ThermalTelemetry{45.0, 48.0, 32.0, 0, "Nominal"}));
}

TEST_F(ThermalReaderTest, FallsBackToTheInitialRecordWithoutAListAndRecovers) {
    ThermalReader reader(mac.hidEventSystem, mac.processInfo);
    mac.hidEventSystem.servicesFailure.times(1);

    EXPECT_EQ(reader.readThermals(), (ThermalTelemetry{45.0, 48.0, 32.0, 0, "Nominal"}));
    EXPECT_EQ(reader.readThermals().sensorCount, 20);
    EXPECT_EQ(mac.hidEventSystem.createdClients(), 1);
}

TEST_F(ThermalReaderTest, KeepsTheOthersWhenOneSensorFails) {
    mac.hidEventSystem.sensors = {{"PMU tdie1", 90.0}, {"PMU tdie2", 60.0}};

    mac.hidEventSystem.productFailure.times(1);
    EXPECT_EQ(read().peakDieTemp, 60);
    mac.hidEventSystem.temperatureFailure.times(1);
    EXPECT_EQ(read().peakDieTemp, 60);
    EXPECT_EQ(read().peakDieTemp, 90);
}

TEST_F(ThermalReaderTest, NamesTheThermalState) {
    const auto stateAt = [this](std::int64_t state) {
        mac.processInfo.state = state;
        return read().thermalState;
    };

    EXPECT_EQ(stateAt(0), "Nominal");
    EXPECT_EQ(stateAt(1), "Fair");
    EXPECT_EQ(stateAt(2), "Serious");
    EXPECT_EQ(stateAt(3), "Critical");
    EXPECT_EQ(stateAt(4), "Nominal");
    EXPECT_EQ(stateAt(-1), "Nominal");
}

}  // namespace
}  // namespace kestro
