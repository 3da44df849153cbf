#include "platform/desktop/json_user_defaults.h"

#include "platform/desktop/qt_run_loop.h"
#include "platform/desktop/unix_signal_notifier.h"
#include "tests/platform/desktop/json_user_defaults_fixture.h"
#include "tests/support/event_waiting.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace kestro {
namespace {

namespace fs = std::filesystem;

TEST_F(JsonUserDefaultsTest, AreEmptyForANewUserAndCreateNoFile) {
    {
        const auto defaults = open();
        EXPECT_EQ(defaults.object("kestro.isPinned"), std::nullopt);
        EXPECT_EQ(runLoop.runningTimers(), 0);
    }

    EXPECT_FALSE(fs::exists(path.parent_path()));
}

TEST_F(JsonUserDefaultsTest, ReadsSeeEarlierWritesImmediately) {
    auto defaults = open();

    defaults.set("kestro.processCountLimit", std::int64_t{-1});

    EXPECT_EQ(defaults.object("kestro.processCountLimit"), PreferenceValue(std::int64_t{-1}));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(JsonUserDefaultsTest, ValuesAreRestoredAtTheNextStart) {
    const std::string json = "\"Fahrenheit (°F)\"";
    const PreferenceData unit(json.begin(), json.end());
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
        defaults.set("kestro.customFanRPM", 3500.0);
        defaults.set("kestro.temperatureUnit", unit);
    }

    const auto defaults = open();

    EXPECT_EQ(defaults.object("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(defaults.object("kestro.customFanRPM"), PreferenceValue(3500.0));
    EXPECT_EQ(defaults.object("kestro.temperatureUnit"), PreferenceValue(unit));
}

TEST_F(JsonUserDefaultsTest, TheFileIsHumanReadable) {
    const std::string json = R"({"lowTemp":48.0})";
    {
        auto defaults = open();
        defaults.set("kestro.leftFanCurve", PreferenceData(json.begin(), json.end()));
        defaults.set("kestro.customFanRPM", 3500.0);
    }

    EXPECT_EQ(contentsOf(path), R"({
  "kestro.customFanRPM": 3500.0,
  "kestro.leftFanCurve": {
    "json": {
      "lowTemp": 48.0
    }
  }
}
)");
}

TEST_F(JsonUserDefaultsTest, ChangesOfOneTurnAreWrittenTogetherAtOnce) {
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    defaults.set("kestro.customFanRPM", 3500.0);

    runLoop.endTurn();

    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 1U);
    runLoop.runTasks();
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(3500.0));
}

TEST_F(JsonUserDefaultsTest, ABurstIsWrittenAtItsStartAndHalfASecondLater) {
    auto defaults = open();

    for (int step = 0; step <= 100; ++step) {
        defaults.set("kestro.customFanRPM", 1000.0 + step);
        runLoop.endTurn();
    }

    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 1U);
    runLoop.runTasks();
    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(1000.0));
    EXPECT_EQ(runLoop.runningTimers(), 1);
    EXPECT_EQ(runLoop.lastPeriod, std::chrono::milliseconds(500));
    passTheRest();
    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(1100.0));
}

TEST_F(JsonUserDefaultsTest, StopsTheTimerHalfASecondAfterTheLastWrite) {
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    runLoop.endTurn();
    runLoop.runTasks();

    runLoop.fireTimers();

    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 0U);
    EXPECT_EQ(runLoop.runningTimers(), 0);
}

TEST_F(JsonUserDefaultsTest, ASlowDiskGetsOneWriteAtATime) {
    auto defaults = open();
    defaults.set("kestro.customFanRPM", 1.0);
    runLoop.fireTimers();

    defaults.set("kestro.customFanRPM", 2.0);
    runLoop.fireTimers();

    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 1U);
    runLoop.runTasks();
    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(1.0));
    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 1U) << "an overdue write follows at once";
    runLoop.runTasks();
    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(2.0));
}

TEST_F(JsonUserDefaultsTest, FlushWritesNowAndALateWriteDoesNotUndoIt) {
    auto defaults = open();
    defaults.set("kestro.customFanRPM", 1.0);
    runLoop.fireTimers();
    defaults.set("kestro.customFanRPM", 2.0);

    defaults.flush();
    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(2.0));
    runLoop.runTasks();

    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(2.0));
    EXPECT_EQ(runLoop.runningTimers(), 0);
}

TEST_F(JsonUserDefaultsTest, FlushTakesOverAWriteThatHasNotStarted) {
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    runLoop.fireTimers();

    defaults.flush();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, AWriteMayOutliveItsOwner) {
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
        runLoop.fireTimers();
    }

    runLoop.runTasks();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, WritesAutomaticallyOnTheRealRunLoop) {
    QtRunLoop realRunLoop;
    JsonUserDefaults defaults(realRunLoop, path);

    defaults.set("kestro.isPinned", true);

    EXPECT_TRUE(waitUntil([&] { return fs::exists(path); }));
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, IsSavedWhenASignalEndsTheProcess) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        auto defaults = open();
        defaults.set("last", std::int64_t{number});
        int delivered = 0;
        const UnixSignalNotifier notifier([&](int signalNumber) {
            defaults.flush();
            delivered = signalNumber;
        });

        ASSERT_EQ(::raise(number), 0);
        EXPECT_EQ(delivered, 0) << "signals are delivered only by the event loop";
        ASSERT_TRUE(waitUntil([&] { return delivered != 0; }));

        EXPECT_EQ(delivered, number);
        EXPECT_EQ(stored("last"), PreferenceValue(std::int64_t{number}));
    }
}

TEST_F(JsonUserDefaultsTest, IsSavedWhenTheToolkitExits) {
    // The child runs this test again, in its own directory: the variable holds the parent's.
    constexpr auto variable = "KESTRO_TEST_PREFERENCES";
    if (qEnvironmentVariableIsEmpty(variable)) {
        qputenv(variable, path.c_str());
    }
    const std::string shared = qgetenv(variable).toStdString();
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_EXIT(
        {
            JsonUserDefaults defaults(runLoop, shared);
            defaults.flushAtExit();
            defaults.set("kestro.isPinned", true);
            std::exit(7);
        },
        testing::ExitedWithCode(7), "");

    qunsetenv(variable);
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST(UnixSignalNotifier, LeavesIgnoredSignalsIgnoredAndRestoresTheOthers) {
    const auto former = std::signal(SIGHUP, SIG_IGN);
    struct sigaction action {};
    {
        const UnixSignalNotifier notifier([](int) { FAIL(); });
        ::sigaction(SIGHUP, nullptr, &action);
        EXPECT_EQ(action.sa_handler, SIG_IGN);
        ::sigaction(SIGTERM, nullptr, &action);
        EXPECT_NE(action.sa_handler, SIG_DFL);
    }

    ::sigaction(SIGTERM, nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
    std::signal(SIGHUP, former);
}

TEST(JsonUserDefaultsPath, FollowsTheConfigurationHome) {
    const auto formerConfig = qgetenv("XDG_CONFIG_HOME");
    const auto formerHome = qgetenv("HOME");
    qputenv("HOME", "/home/somebody");

    qputenv("XDG_CONFIG_HOME", "/else/where");
    EXPECT_EQ(JsonUserDefaults::defaultPath(), "/else/where/kestro/preferences.json");
    qputenv("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(JsonUserDefaults::defaultPath(), "/home/somebody/.config/kestro/preferences.json");
    qunsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(JsonUserDefaults::defaultPath(), "/home/somebody/.config/kestro/preferences.json");

    formerConfig.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", formerConfig);
    qputenv("HOME", formerHome);
}

}  // namespace
}  // namespace kestro
