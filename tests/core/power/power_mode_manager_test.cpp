#include "core/power/power_mode_manager.h"

#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST(PowerModeManager, IsBalancedUntilTheFirstReadCompletes) {
    SimulatedMac mac;
    mac.commandRunner.powerMode = 2;

    const PowerModeManager manager(mac.platform());
    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::balanced);
    EXPECT_TRUE(manager.supportsHighPowerMode.get());
    mac.runPending();

    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::highPower);
}

TEST(PowerModeManager, ReadsWithThePowerToolInTheBackground) {
    SimulatedMac mac;

    const PowerModeManager manager(mac.platform());
    EXPECT_TRUE(mac.commandRunner.calls().empty());
    mac.runPending();

    ASSERT_EQ(mac.commandRunner.calls().size(), 1U);
    EXPECT_EQ(mac.commandRunner.calls()[0].executable, "/usr/bin/pmset");
    EXPECT_EQ(mac.commandRunner.calls()[0].arguments, std::vector<std::string>{"-g"});
    EXPECT_EQ(mac.runLoop.startedBackgroundTasks(TaskPriority::utility), 1);
}

TEST(PowerModeManager, RereadsEveryFiveSeconds) {
    SimulatedMac mac;
    const PowerModeManager manager(mac.platform());
    mac.runPending();

    mac.commandRunner.powerMode = 1;
    mac.advance(4900ms);
    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::balanced);
    mac.advance(100ms);

    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::lowPower);
    EXPECT_EQ(mac.commandRunner.calls().size(), 2U);
}

TEST(PowerModeManager, PublishesEveryReadEvenIfEqual) {
    SimulatedMac mac;
    PowerModeManager manager(mac.platform());
    int published = 0;
    const auto subscription = manager.currentMode.subscribe([&](const SystemPowerMode&) { ++published; });

    mac.runPending();
    manager.refreshPowerMode();
    mac.runPending();

    EXPECT_EQ(published, 2);
}

TEST(PowerModeManager, FallsBackToBalancedWhenTheToolCannotRun) {
    SimulatedMac mac;
    mac.commandRunner.powerMode = 2;
    PowerModeManager manager(mac.platform());
    mac.runPending();

    mac.commandRunner.failure.always();
    manager.refreshPowerMode();
    mac.runPending();

    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::balanced);
}

TEST(PowerModeManager, FallsBackToBalancedOnUnreadableOutput) {
    SimulatedMac mac;
    mac.commandRunner.outputs["/usr/bin/pmset"] = "powermode 2\n\xC3(";
    const PowerModeManager manager(mac.platform());

    mac.runPending();

    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::balanced);
}

TEST(PowerModeManager, SwitchesThroughAScriptWithAdministratorPrivileges) {
    SimulatedMac mac;
    PowerModeManager manager(mac.platform());
    mac.runPending();

    for (const auto mode : allCases<SystemPowerMode>()) {
        manager.setPowerMode(mode);
        mac.runPending();
        EXPECT_EQ(manager.currentMode.get(), mode);
    }

    EXPECT_EQ(
        mac.scriptRunner.sources,
        (std::vector<std::string>{"do shell script \"pmset -a powermode 1\" with administrator privileges",
                                  "do shell script \"pmset -a powermode 0\" with administrator privileges",
                                  "do shell script \"pmset -a powermode 2\" with administrator privileges"}));
    EXPECT_EQ(mac.runLoop.startedBackgroundTasks(TaskPriority::userInitiated), 3);
}

TEST(PowerModeManager, NeverShowsASwitchBeforeItTakesEffect) {
    SimulatedMac mac;
    PowerModeManager manager(mac.platform());
    mac.runPending();
    std::vector<SystemPowerMode> seen;
    const auto subscription =
        manager.currentMode.subscribe([&](const SystemPowerMode& mode) { seen.push_back(mode); });

    manager.setPowerMode(SystemPowerMode::highPower);
    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::balanced);
    EXPECT_TRUE(mac.scriptRunner.sources.empty());
    mac.runPending();

    EXPECT_EQ(seen, std::vector{SystemPowerMode::highPower});
}

TEST(PowerModeManager, KeepsTheOldModeWhenTheUserDeclines) {
    SimulatedMac mac;
    mac.commandRunner.powerMode = 1;
    mac.scriptRunner.refusal.always();
    PowerModeManager manager(mac.platform());
    mac.runPending();

    manager.setPowerMode(SystemPowerMode::highPower);
    mac.runPending();

    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::lowPower);
    EXPECT_EQ(mac.commandRunner.calls().size(), 2U);
}

TEST(PowerModeManager, KeepsTheLastReadToFinish) {
    SimulatedMac mac;
    PowerModeManager manager(mac.platform());
    mac.runPending();
    mac.runLoop.holdBackgroundTasks();
    manager.refreshPowerMode();
    manager.refreshPowerMode();

    mac.commandRunner.powerMode = 2;
    mac.runLoop.finishBackgroundTask(1);
    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::highPower);
    mac.commandRunner.powerMode = 1;
    mac.runLoop.finishBackgroundTask(0);

    EXPECT_EQ(manager.currentMode.get(), SystemPowerMode::lowPower);
}

TEST(PowerModeManager, IgnoresWorkThatFinishesAfterItsDestruction) {
    SimulatedMac mac;
    auto manager = std::make_unique<PowerModeManager>(mac.platform());
    mac.runPending();
    mac.runLoop.holdBackgroundTasks();
    manager->refreshPowerMode();
    manager->setPowerMode(SystemPowerMode::lowPower);

    manager.reset();
    mac.runLoop.finishBackgroundTask(0);
    mac.runLoop.finishBackgroundTask(0);

    EXPECT_EQ(mac.scriptRunner.sources.size(), 1U);
    EXPECT_EQ(mac.runLoop.heldBackgroundTasks(), 0U);
    EXPECT_TRUE(mac.runLoop.timerPeriods().empty());
}

}  // namespace
}  // namespace kestro
