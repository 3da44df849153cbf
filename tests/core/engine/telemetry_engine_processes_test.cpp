#include "tests/core/engine/telemetry_engine_fixture.h"

#include <string>
#include <vector>

namespace kestro {
namespace {

using namespace std::chrono_literals;

TEST_F(TelemetryEngineTest, ListsProcessesInTheBackgroundAccordingToTheSettings) {
    settings.processSortMetric.set(ProcessSortMetric::memory);
    settings.processCountLimit.set(3);
    mac.runLoop.holdBackgroundTasks();

    engine().sampleFull();
    EXPECT_TRUE(mac.commandRunner.calls().empty());
    mac.runLoop.releaseBackgroundTasks();

    EXPECT_EQ(mac.runLoop.startedBackgroundTasks(TaskPriority::userInitiated), 1);
    EXPECT_EQ(mac.commandRunner.calls().at(0).arguments.at(1), "-m");
    ASSERT_EQ(engine().topProcesses.get().size(), 3u);
    EXPECT_EQ(engine().topProcesses.get()[0].name, "Safari");
}

TEST_F(TelemetryEngineTest, ReadsTheSettingsOfAListingOnRequest) {
    settings.processSortMetric.set(ProcessSortMetric::cpu);
    settings.processCountLimit.set(4);
    mac.runLoop.holdBackgroundTasks();

    engine().refreshProcesses();
    settings.processSortMetric.set(ProcessSortMetric::memory);
    settings.processCountLimit.set(9);
    mac.runLoop.releaseBackgroundTasks();

    EXPECT_EQ(engine().topProcesses.get().size(), 4u);
    EXPECT_EQ(mac.commandRunner.calls().at(0).arguments.back(), "-r");
}

TEST_F(TelemetryEngineTest, KeepsTheLastListWhileProcessesAreNotShown) {
    engine().sampleFull();
    mac.runPending();
    const auto listed = engine().topProcesses.get();
    settings.showTopProcesses.set(false);
    engine().setUIActive(true);

    mac.advance(1h);

    EXPECT_FALSE(listed.empty());
    EXPECT_EQ(engine().topProcesses.get(), listed);
    EXPECT_EQ(mac.commandRunner.calls().size(), 1u);
}

TEST_F(TelemetryEngineTest, ListsProcessesOnRequestWhileTheyAreNotShown) {
    settings.showTopProcesses.set(false);

    engine().refreshProcesses();
    mac.runPending();

    EXPECT_FALSE(engine().topProcesses.get().empty());
}

TEST_F(TelemetryEngineTest, TheListingThatFinishesLastWins) {
    mac.runLoop.holdBackgroundTasks();
    settings.processCountLimit.set(1);
    engine().refreshProcesses();
    settings.processCountLimit.set(2);
    engine().refreshProcesses();

    mac.runLoop.finishBackgroundTask(1);
    EXPECT_EQ(engine().topProcesses.get().size(), 2u);
    mac.runLoop.finishBackgroundTask(0);

    EXPECT_EQ(engine().topProcesses.get().size(), 1u);
}

TEST_F(TelemetryEngineTest, AnEmptyListingReplacesTheList) {
    engine().refreshProcesses();
    mac.runPending();
    mac.commandRunner.failure.always();

    engine().refreshProcesses();
    mac.runPending();

    EXPECT_TRUE(engine().topProcesses.get().empty());
}

TEST_F(TelemetryEngineTest, IgnoresAListingThatFinishesAfterTheEngineIsDestroyed) {
    mac.runLoop.holdBackgroundTasks();
    engine().refreshProcesses();
    mac.runLoop.holdBackgroundTasks();

    destroyEngine();
    mac.runLoop.finishBackgroundTask(0);

    EXPECT_EQ(mac.commandRunner.calls().size(), 1u);
}

}  // namespace
}  // namespace kestro
