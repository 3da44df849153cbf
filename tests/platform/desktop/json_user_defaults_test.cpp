#include "platform/desktop/json_user_defaults.h"

#include "platform/desktop/qt_run_loop.h"
#include "platform/desktop/unix_signal_notifier.h"
#include "tests/platform/desktop/event_waiting.h"
#include "tests/platform/desktop/manual_run_loop.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kestro {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::UnorderedElementsAre;
using testing_support::ManualRunLoop;
using testing_support::waitUntil;

std::string contentsOf(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

class JsonUserDefaultsTest : public testing::Test {
protected:
    void write(const std::string& text) {
        fs::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }

    std::vector<std::string> filesInDirectory() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(path.parent_path())) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    JsonUserDefaults open() { return {runLoop, path}; }

    /// What another process would read now.
    std::optional<PreferenceValue> stored(std::string_view key) {
        const auto values = PreferencesFile(path).load();
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    /// Lets the write happen that is due a second after an assignment.
    void passASecond() {
        runLoop.fireTimers();
        runLoop.runTasks();
    }

    QTemporaryDir directory;
    fs::path path = fs::path(directory.path().toStdString()) / "config" / "kestro" / "preferences.json";
    ManualRunLoop runLoop;
};

TEST_F(JsonUserDefaultsTest, AFreshUserHasNothingAndNoFileIsMade) {
    {
        const auto defaults = open();
        EXPECT_EQ(defaults.object("kestro.isPinned"), std::nullopt);
        EXPECT_EQ(runLoop.runningTimers(), 0);
    }

    EXPECT_FALSE(fs::exists(path.parent_path()));
}

TEST_F(JsonUserDefaultsTest, ReadsSeeEarlierWritesAtOnce) {
    auto defaults = open();

    defaults.set("kestro.processCountLimit", std::int64_t{-1});

    EXPECT_EQ(defaults.object("kestro.processCountLimit"), PreferenceValue(std::int64_t{-1}));
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(JsonUserDefaultsTest, ValuesComeBackAtTheNextStart) {
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

TEST_F(JsonUserDefaultsTest, PeopleCanReadTheFile) {
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

TEST_F(JsonUserDefaultsTest, ABurstBecomesOneWrite) {
    auto defaults = open();

    for (int step = 0; step <= 100; ++step) {
        defaults.set("kestro.customFanRPM", 1000.0 + step);
    }

    EXPECT_EQ(runLoop.runningTimers(), 1);
    EXPECT_EQ(runLoop.lastPeriod, std::chrono::seconds(1));
    runLoop.fireTimers();
    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 1U);
    runLoop.runTasks();
    EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(1100.0));
    EXPECT_EQ(runLoop.runningTimers(), 0);
}

TEST_F(JsonUserDefaultsTest, ASlowDiskHasOneWriteAtATime) {
    auto defaults = open();
    defaults.set("kestro.customFanRPM", 1.0);
    runLoop.fireTimers();

    defaults.set("kestro.customFanRPM", 2.0);
    runLoop.fireTimers();

    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 1U);
    runLoop.runTasks();
    passASecond();
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

TEST_F(JsonUserDefaultsTest, FlushTakesAWriteThatHasNotBegun) {
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    runLoop.fireTimers();

    defaults.flush();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, AWriteMayEndAfterItsOwner) {
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
        runLoop.fireTimers();
    }

    runLoop.runTasks();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, KeepsKeysThatItDoesNotKnow) {
    write(R"({"later.version": {"deep": [1, null]}, "kestro.isPinned": false, "nothing": null, "n": 1})");
    {
        auto defaults = open();
        EXPECT_EQ(defaults.object("later.version"), std::nullopt);
        defaults.set("kestro.isPinned", true);
    }

    const auto json = parsePreferenceJson(contentsOf(path));
    EXPECT_EQ(json->dump(), R"({"later.version":{"deep":[1,null]},"kestro.isPinned":true,"nothing":null,"n":1})");
}

TEST_F(JsonUserDefaultsTest, KeepsWhatSomebodyElseWroteMeanwhile) {
    auto defaults = open();
    write(R"({"other": "new", "kestro.isPinned": false})");

    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_EQ(stored("other"), PreferenceValue(std::string("new")));
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, AVanishedFileIsWrittenAsAWhole) {
    write(R"({"kestro.showMemory": false, "later": null})");
    auto defaults = open();
    fs::remove(path);

    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_EQ(parsePreferenceJson(contentsOf(path))->dump(),
              R"({"kestro.showMemory":false,"later":null,"kestro.isPinned":true})");
}

TEST_F(JsonUserDefaultsTest, FileAndDirectoryBelongToTheUserAlone) {
    const auto formerMask = ::umask(0);
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }
    ::umask(formerMask);

    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    ASSERT_EQ(::stat(path.parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700U);
    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
}

class DamagedPreferences : public JsonUserDefaultsTest, public testing::WithParamInterface<std::string> {};

TEST_P(DamagedPreferences, AreSetAside) {
    write(GetParam());
    {
        auto defaults = open();
        EXPECT_EQ(defaults.object("kestro.isPinned"), std::nullopt);
        EXPECT_FALSE(fs::exists(path));
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_EQ(contentsOf(path.string() + ".damaged"), GetParam());
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

INSTANTIATE_TEST_SUITE_P(Forms, DamagedPreferences,
                         testing::Values("{\"kestro.isPinned\": tr", "[]", "null", " ", "\xff\xfe{}",
                                         std::string(100'000, '['), std::string(2 * 1024 * 1024, ' '),
                                         "{\"kestro.isPinned\": true} x"));

TEST_F(JsonUserDefaultsTest, AnEmptyFileHoldsNothing) {
    write("");
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
}

TEST_F(JsonUserDefaultsTest, EarlierDamagedFilesAreNotLost) {
    for (const std::string text : {"one", "two", "three"}) {
        write(text);
        open();
    }

    EXPECT_EQ(contentsOf(path.string() + ".damaged"), "one");
    EXPECT_EQ(contentsOf(path.string() + ".damaged.2"), "two");
    EXPECT_EQ(contentsOf(path.string() + ".damaged.3"), "three");
}

TEST_F(JsonUserDefaultsTest, ADamagedFileThatCannotBeSetAsideStays) {
    for (int number = 0; number < 9; ++number) {
        write("damaged " + std::to_string(number));
        open();
    }
    write("the tenth");

    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_EQ(contentsOf(path), "the tenth");
    EXPECT_EQ(defaults.object("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, AFileDamagedMeanwhileIsSetAsideAndWrittenFromMemory) {
    write(R"({"kestro.showMemory": false})");
    auto defaults = open();
    write("{\"half");

    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_EQ(contentsOf(path.string() + ".damaged"), "{\"half");
    EXPECT_EQ(stored("kestro.showMemory"), PreferenceValue(false));
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, ALinkIsKeptAndItsFileReplaced) {
    const fs::path real = path.parent_path().parent_path() / "dotfiles.json";
    write("");
    std::ofstream(real) << R"({"n": 1})";
    fs::remove(path);
    fs::create_symlink(real, path);
    {
        auto defaults = open();
        EXPECT_EQ(defaults.object("n"), PreferenceValue(std::int64_t{1}));
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_THAT(contentsOf(real), HasSubstr("kestro.isPinned"));
}

TEST_F(JsonUserDefaultsTest, WhatIsNoRegularFileIsLeftAlone) {
    fs::create_directories(path.parent_path());
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_TRUE(fs::is_fifo(path));
    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
}

TEST_F(JsonUserDefaultsTest, ALinkToTheNullDeviceStaysOne) {
    fs::create_directories(path.parent_path());
    fs::create_symlink("/dev/null", path);
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_EQ(fs::read_symlink(path), "/dev/null");
}

TEST_F(JsonUserDefaultsTest, WhereNothingCanBeWrittenTheNextChangeTriesAgain) {
    const fs::path obstacle = path.parent_path().parent_path();
    std::ofstream(obstacle) << "a file where the directory belongs";
    auto defaults = open();

    defaults.set("kestro.isPinned", true);
    passASecond();
    EXPECT_EQ(defaults.object("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(runLoop.runningTimers(), 0) << "no timer runs while nothing changes";
    fs::remove(obstacle);
    defaults.set("kestro.showMemory", false);
    passASecond();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(stored("kestro.showMemory"), PreferenceValue(false));
}

TEST_F(JsonUserDefaultsTest, AFullDiskLeavesTheOldFileWhole) {
    write(R"({"kestro.isPinned": true})");
    auto defaults = open();
    defaults.set("filler", std::string(100'000, 'x'));
    rlimit former{};
    ::getrlimit(RLIMIT_FSIZE, &former);
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, former.rlim_max};

    ::setrlimit(RLIMIT_FSIZE, &small);
    defaults.flush();
    ::setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, formerHandler);

    EXPECT_EQ(contentsOf(path), R"({"kestro.isPinned": true})");
    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
    defaults.flush();
    EXPECT_THAT(contentsOf(path), HasSubstr("filler"));
}

TEST_F(JsonUserDefaultsTest, NeverWritesWhatItWouldNotReadBack) {
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    defaults.flush();

    defaults.set("huge", std::string(2 * maximumPreferenceBytes, 'x'));
    defaults.flush();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(stored("huge"), std::nullopt);
}

TEST_F(JsonUserDefaultsTest, ALeftoverOfACrashIsNoObstacle) {
    write("{}");
    std::ofstream(path.string() + ".new") << "half a fi";
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(JsonUserDefaultsTest, WritesByItselfOnTheRealRunLoop) {
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
        EXPECT_EQ(delivered, 0) << "only the event loop delivers";
        ASSERT_TRUE(waitUntil([&] { return delivered != 0; }));

        EXPECT_EQ(delivered, number);
        EXPECT_EQ(stored("last"), PreferenceValue(std::int64_t{number}));
    }
}

TEST_F(JsonUserDefaultsTest, IsSavedWhenTheToolkitExits) {
    // The child runs this test anew, in a directory of its own: the variable names the parent's.
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

TEST(UnixSignalNotifier, LeavesIgnoredSignalsIgnoredAndPutsTheOthersBack) {
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
