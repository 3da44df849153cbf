#include "core/cooling/driving_temperature.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestro {
namespace {

TEST(DrivingTemperature, ReturnsTheReadingOfTheSource) {
    const ThermalTelemetry thermals{51, 73, 36, 20, "Nominal"};

    EXPECT_EQ(drivingTemperature(SensorSource::averageSoC, thermals), 51);
    EXPECT_EQ(drivingTemperature(SensorSource::peakDie, thermals), 73);
    EXPECT_EQ(drivingTemperature(SensorSource::batteryPack, thermals), 36);
}

TEST(DrivingTemperature, FallsBackWhenTheReadingIsNotAboveZero) {
    for (const double missing : {0.0, -12.0, std::numeric_limits<double>::quiet_NaN()}) {
        const ThermalTelemetry thermals{missing, missing, missing, 20, "Nominal"};

        EXPECT_EQ(drivingTemperature(SensorSource::averageSoC, thermals), 48);
        EXPECT_EQ(drivingTemperature(SensorSource::peakDie, thermals), 52);
        EXPECT_EQ(drivingTemperature(SensorSource::batteryPack, thermals), 32);
    }
}

TEST(DrivingTemperature, IsMeasuredIfASensorGaveTheReadingOfTheSource) {
    for (const SensorSource source : allCases<SensorSource>()) {
        EXPECT_EQ(isDrivingTemperatureMeasured(source, {.averageSoC = true}), source == SensorSource::averageSoC);
        EXPECT_EQ(isDrivingTemperatureMeasured(source, {.peakDie = true}), source == SensorSource::peakDie);
        EXPECT_EQ(isDrivingTemperatureMeasured(source, {.battery = true}), source == SensorSource::batteryPack);
    }
}

}  // namespace
}  // namespace kestro
