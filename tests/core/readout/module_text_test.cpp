#include "core/readout/module_text.h"

#include "core/base/text.h"
#include "tests/core/readout/readout_machine.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace kestro {
namespace {

using Module = MenubarModuleType;

struct Machine : ReadoutMachine {
    std::string text(Module module) const { return formattedText(module, inputs()); }
};

std::string textWithoutData(Module module, bool showLabels = true) {
    ReadoutInputs nothing;
    nothing.showLabels = showLabels;
    return formattedText(module, nothing);
}

TEST(ModuleText, ShowsPlaceholdersBeforeTheFirstSample) {
    EXPECT_EQ(textWithoutData(Module::appIcon), "");
    EXPECT_EQ(textWithoutData(Module::memory), "RAM --");
    EXPECT_EQ(textWithoutData(Module::cpuUsage), "CPU --");
    EXPECT_EQ(textWithoutData(Module::cpuClusters), "P:-- E:--");
    EXPECT_EQ(textWithoutData(Module::thermal), "--°C");
    EXPECT_EQ(textWithoutData(Module::fanSpeed), "0 RPM");
    EXPECT_EQ(textWithoutData(Module::network), "↓-- ↑--");
    EXPECT_EQ(textWithoutData(Module::battery), "AC");
    EXPECT_EQ(textWithoutData(Module::diskSpace), "SSD --");
}

TEST(ModuleText, ShowsEachReadingTruncated) {
    const Machine machine;

    EXPECT_EQ(machine.text(Module::appIcon), "");
    EXPECT_EQ(machine.text(Module::memory), "RAM 42%");
    EXPECT_EQ(machine.text(Module::cpuUsage), "CPU 18%");
    EXPECT_EQ(machine.text(Module::cpuClusters), "P:24% E:8%");
    EXPECT_EQ(machine.text(Module::thermal), "48°C");
    EXPECT_EQ(machine.text(Module::fanSpeed), "1420 RPM");
    EXPECT_EQ(machine.text(Module::network), "↓1.2M ↑240K");
    EXPECT_EQ(machine.text(Module::battery), "98%");
    EXPECT_EQ(machine.text(Module::diskSpace), "SSD 512G");
}

TEST(ModuleText, OmitsOnlyTheMemoryAndLoadLabels) {
    const Machine machine;
    for (const auto module : allCases<Module>()) {
        auto inputs = machine.inputs();
        const auto labelled = formattedText(module, inputs);

        inputs.showLabels = false;

        const auto expected = module == Module::memory ? "42%" : module == Module::cpuUsage ? "18%" : labelled;
        EXPECT_EQ(formattedText(module, inputs), expected);
    }
    EXPECT_EQ(textWithoutData(Module::memory, false), "--");
    EXPECT_EQ(textWithoutData(Module::cpuUsage, false), "--");
}

TEST(ModuleText, ShowsAFullMemoryAndLoad) {
    Machine machine;
    machine.memory.usedBytes = machine.memory.totalBytes;
    machine.cpu.totalUsage = 100;

    EXPECT_EQ(machine.text(Module::memory), "RAM 100%");
    EXPECT_EQ(machine.text(Module::cpuUsage), "CPU 100%");
}

TEST(ModuleText, HasNoTemperatureAtOrBelowZero) {
    Machine machine;
    for (const double reading : {0.0, -4.0, std::numeric_limits<double>::quiet_NaN()}) {
        machine.thermal.averageSoCTemp = reading;

        EXPECT_EQ(machine.text(Module::thermal), "--°C");
    }
    machine.thermal.averageSoCTemp = 0.5;
    EXPECT_EQ(machine.text(Module::thermal), "0°C");
}

TEST(ModuleText, ShowsTheFirstTwoOfSeveralFans) {
    Machine machine;
    machine.fans.push_back({1, "Right", 1512.7, 1500, 1350, 7800});
    EXPECT_EQ(machine.text(Module::fanSpeed), "L:1420 R:1512");

    machine.fans.push_back({2, "Third", 9000, 9000, 0, 9000});
    EXPECT_EQ(machine.text(Module::fanSpeed), "L:1420 R:1512");
}

TEST(ModuleText, ShowsEveryProfile) {
    const std::vector<std::string> expected{"\U0001F343 SILENT", "\u26A1 AUTO", "\u2744\uFE0F COOL",
                                            "\U0001F525 TURBO", "\U0001F39B\uFE0F CUSTOM"};
    for (const auto profile : allCases<FanProfile>()) {
        ReadoutInputs inputs;
        inputs.fanProfile = profile;

        EXPECT_EQ(formattedText(Module::fanProfile, inputs), expected[static_cast<std::size_t>(profile)]);
    }
}

TEST(ModuleText, ShowsEveryPowerMode) {
    const std::vector<std::string> expected{"\U0001F343 LOW", "\u26A1 AUTO", "\U0001F680 HIGH"};
    for (const auto mode : allCases<SystemPowerMode>()) {
        ReadoutInputs inputs;
        inputs.powerMode = mode;

        EXPECT_EQ(formattedText(Module::powerMode, inputs), expected[static_cast<std::size_t>(mode)]);
    }
}

TEST(ModuleText, MarksAChargingBattery) {
    Machine machine;
    machine.power.isCharging = true;

    EXPECT_EQ(machine.text(Module::battery), "\u26A198%");
}

TEST(ModuleText, ShowsACForAMachineWithoutABattery) {
    Machine machine;
    machine.power.hasBattery = false;
    machine.power.isCharging = true;

    EXPECT_EQ(machine.text(Module::battery), "AC");
}

TEST(ModuleText, ShowsFreeSpaceInGigabytesThenTerabytes) {
    Machine machine;
    const auto withFree = [&](std::uint64_t bytes) {
        machine.disk.freeBytes = bytes;
        return machine.text(Module::diskSpace);
    };

    EXPECT_EQ(withFree(1'200'000'000'000), "SSD 1.2T");
    EXPECT_EQ(withFree(1'000'000'000'000), "SSD 1.0T");
    EXPECT_EQ(withFree(999'400'000'000), "SSD 999G");
    EXPECT_EQ(withFree(999'999'999'999), "SSD 1000G");
    EXPECT_EQ(withFree(600'000'000), "SSD 1G");
    EXPECT_EQ(withFree(0), "SSD 0G");
}

TEST(ModuleText, ShowsTheKeepAwakeState) {
    ReadoutInputs inputs;
    EXPECT_EQ(formattedText(Module::keepAwake, inputs), "\u2615 OFF");

    inputs.isKeepAwakeActive = true;
    EXPECT_EQ(formattedText(Module::keepAwake, inputs), "\u2615 ON");
}

TEST(ModuleText, ShowsTheWholeMinutesLeftOfKeepAwake) {
    ReadoutInputs inputs;
    inputs.isKeepAwakeActive = true;
    const auto withRemaining = [&](double seconds) {
        inputs.keepAwakeRemainingSeconds = seconds;
        return formattedText(Module::keepAwake, inputs);
    };

    EXPECT_EQ(withRemaining(14400), "☕ 240m");
    EXPECT_EQ(withRemaining(845.9), "☕ 14m");
    EXPECT_EQ(withRemaining(60), "☕ 1m");
    EXPECT_EQ(withRemaining(59.9), "☕ 0m");
}

TEST(ModuleText, ShowsNetworkRatesByTheirSize) {
    EXPECT_EQ(formatNetRate(0), "0");
    EXPECT_EQ(formatNetRate(999.9), "999");
    EXPECT_EQ(formatNetRate(1000), "1K");
    EXPECT_EQ(formatNetRate(240'000), "240K");
    EXPECT_EQ(formatNetRate(999'999), "999K");
    EXPECT_EQ(formatNetRate(1'000'000), "1.0M");
    EXPECT_EQ(formatNetRate(1'200'000), "1.2M");
    EXPECT_EQ(formatNetRate(99'999'999), "99.9M");
    EXPECT_EQ(formatNetRate(100'000'000), "100M");
    EXPECT_EQ(formatNetRate(1'250'000'000), "1250M");
}

TEST(ModuleText, ToleratesNonFiniteNumbers) {
    Machine machine;
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    machine.cpu.totalUsage = none;
    machine.fans[0].currentRPM = std::numeric_limits<double>::infinity();

    EXPECT_EQ(machine.text(Module::cpuUsage), "CPU 0%");
    EXPECT_EQ(machine.text(Module::fanSpeed), "1000000000 RPM");
    EXPECT_EQ(formatNetRate(none), "0");
}

std::size_t lengthInCharacters(const std::string& text) {
    std::size_t count = 0;
    for (const char byte : text) {
        count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
    }
    return count;
}

TEST(ModuleText, IsNeverLongerThanItsWidestText) {
    Machine busy;
    busy.memory.usedBytes = busy.memory.totalBytes;
    busy.cpu.totalUsage = busy.cpu.cluster0Usage = busy.cpu.cluster1Usage = 100;
    busy.thermal.averageSoCTemp = 109;
    busy.network = {9'999'000'000, 99'900'000, "eth0", "10.0.0.2"};
    busy.power.isCharging = true;
    busy.power.percentage = 100;
    busy.disk.freeBytes = 999'999'999'999;
    Machine twoFans = busy;
    twoFans.fans = {{0, "L", 7300, 0, 1200, 7300}, {1, "R", 18000, 0, 1200, 16000}};
    Machine onMains = busy;
    onMains.power.hasBattery = false;
    onMains.fans.clear();

    for (const auto* machine : {&busy, &twoFans, &onMains}) {
        for (const auto profile : allCases<FanProfile>()) {
            for (const auto mode : allCases<SystemPowerMode>()) {
                auto inputs = machine->inputs();
                inputs.fanProfile = profile;
                inputs.powerMode = mode;
                inputs.isKeepAwakeActive = true;
                inputs.keepAwakeRemainingSeconds = 14400;
                for (const auto module : allCases<Module>()) {
                    std::string widest;
                    appendWidestText(widest, module, WidestTextInputs::of(inputs));
                    EXPECT_LE(lengthInCharacters(formattedText(module, inputs)), lengthInCharacters(widest))
                        << rawValue(module);
                    EXPECT_TRUE(isValidUtf8(widest));
                }
            }
        }
    }
}

TEST(ModuleText, KeepsTheWidestTextIndependentOfReadings) {
    Machine first;
    Machine second;
    second.memory.usedBytes = 10;
    second.cpu.totalUsage = 3;
    second.thermal.averageSoCTemp = 101;
    second.fans[0].currentRPM = 7200;
    second.network.downloadBytesPerSec = 5;
    second.power.isCharging = true;
    second.disk.freeBytes = 5;

    for (const auto module : allCases<Module>()) {
        std::string before;
        std::string after;
        appendWidestText(before, module, WidestTextInputs::of(first.inputs()));
        appendWidestText(after, module, WidestTextInputs::of(second.inputs()));
        EXPECT_EQ(before, after) << rawValue(module);
    }
}

TEST(ModuleText, KeepsTheWidestSpeedForAReadingAboveTheMaximum) {
    Machine machine;
    machine.fans = {{0, "Fan #1", 1420, 1420, 1200, 7300}};
    std::string before;
    appendWidestText(before, Module::fanSpeed, WidestTextInputs::of(machine.inputs()));

    machine.fans[0].currentRPM = 12000;
    std::string after;
    appendWidestText(after, Module::fanSpeed, WidestTextInputs::of(machine.inputs()));

    EXPECT_EQ(before, "9999 RPM");
    EXPECT_EQ(after, before);
    EXPECT_EQ(formattedText(Module::fanSpeed, machine.inputs()), "12000 RPM");
}

}  // namespace
}  // namespace kestro
