#include "platform/desktop/file_replacement.h"
#include "platform/desktop/overflowing_numbers.h"
#include "tests/platform/desktop/json_user_defaults_fixture.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <thread>

namespace kestro {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class PreferenceWriters : public JsonUserDefaultsTest {
protected:
    /// A file where the directory belongs: like a full disk, it makes every write fail.
    void obstruct() { std::ofstream(obstacle) << "a file where the directory belongs"; }
    void clear() { fs::remove(obstacle); }

    /// Lets the timer fire once, and the write that it may start finish.
    void passTheTimer() {
        runLoop.fireTimers();
        runLoop.runTasks();
    }

    const fs::path obstacle = path.parent_path().parent_path();
};

TEST_F(PreferenceWriters, WriteAgainByThemselvesWhenThereIsRoom) {
    obstruct();
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    runLoop.endTurn();
    runLoop.runTasks();
    EXPECT_EQ(stored("kestro.isPinned"), std::nullopt);

    clear();
    passTheTimer();  // the rest after the failed write
    passTheTimer();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
    passTheTimer();
    EXPECT_EQ(runLoop.runningTimers(), 0);
}

TEST_F(PreferenceWriters, BackOffWhileThereIsNoRoom) {
    obstruct();
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    runLoop.endTurn();
    runLoop.runTasks();

    std::vector<std::chrono::milliseconds> delays;
    for (int attempt = 0; attempt < 7; ++attempt) {
        passTheTimer();
        delays.push_back(runLoop.lastPeriod);
        passTheTimer();
    }

    EXPECT_THAT(delays, testing::ElementsAre(1s, 2s, 4s, 8s, 16s, 30s, 30s));
}

TEST_F(PreferenceWriters, TryANewChangeAtOnceWhileBackingOff) {
    obstruct();
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    runLoop.endTurn();
    runLoop.runTasks();
    passTheTimer();
    EXPECT_EQ(runLoop.lastPeriod, 1s);
    clear();

    defaults.set("kestro.showMemory", false);
    runLoop.endTurn();
    runLoop.runTasks();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(stored("kestro.showMemory"), PreferenceValue(false));
}

TEST_F(PreferenceWriters, StartEveryWriteInTimeForTheDeadlineOfASecond) {
    auto defaults = open();
    defaults.set("kestro.customFanRPM", 1.0);
    runLoop.endTurn();
    runLoop.runTasks();

    for (int change = 0; change < 3; ++change) {
        const auto timers = runLoop.scheduledTimers;
        defaults.set("kestro.customFanRPM", 2.0 + change);
        passTheTimer();

        EXPECT_EQ(stored("kestro.customFanRPM"), PreferenceValue(2.0 + change));
        EXPECT_EQ(runLoop.scheduledTimers, timers + 1) << "only a first firing is certain to come within a period";
        EXPECT_LE(runLoop.lastPeriod, 500ms);
    }
}

TEST_F(PreferenceWriters, KeepEachOthersKeys) {
    constexpr int rounds = 100;
    const auto writeKeys = [this](const std::string& prefix) {
        PreferencesFile file(path);
        file.load();
        for (int round = 0; round < rounds; ++round) {
            const PreferencesFile::Values change{{prefix + std::to_string(round), PreferenceValue(true)}};
            EXPECT_TRUE(file.store(change, static_cast<std::uint64_t>(round + 1)));
        }
    };

    std::thread other([&] { writeKeys("other"); });
    writeKeys("own");
    other.join();

    EXPECT_EQ(PreferencesFile(path).load().size(), 2U * rounds);
    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
}

TEST_F(PreferenceWriters, DoNotReplaceAVersionThatTheyHaveNotRead) {
    write("{}");
    const auto seen = versionOf(path);
    std::ofstream(path.string() + ".theirs") << R"({"theirs": 1})";
    fs::rename(path.string() + ".theirs", path);

    EXPECT_EQ(replaceFileAtomically(path, "{}", seen), Replacement::superseded);
    EXPECT_EQ(contentsOf(path), R"({"theirs": 1})");
    EXPECT_EQ(replaceFileAtomically(path, "{}", versionOf(path)), Replacement::done);

    EXPECT_EQ(contentsOf(path), "{}");
    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
}

TEST_F(PreferenceWriters, DoNotReplaceAFileThatHasAppeared) {
    write("{}");

    EXPECT_EQ(replaceFileAtomically(path, "[]", std::nullopt), Replacement::superseded);

    EXPECT_EQ(contentsOf(path), "{}");
}

TEST_F(PreferenceWriters, ExcludeEachOtherByALockOnTheDirectory) {
    write("{}");
    auto lock = std::make_optional<DirectoryLock>(path.parent_path());
    const Descriptor another(::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY));
    EXPECT_NE(::flock(another.get(), LOCK_EX | LOCK_NB), 0);

    lock.reset();

    EXPECT_EQ(::flock(another.get(), LOCK_EX | LOCK_NB), 0);
}

TEST_F(PreferenceWriters, LeaveADeletedFileDeletedUntilTheNextChange) {
    write(R"({"kestro.showMemory": false, "later": null})");
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    runLoop.endTurn();
    runLoop.runTasks();
    fs::remove(path);

    passTheTimer();
    passTheTimer();
    defaults.flush();
    EXPECT_FALSE(fs::exists(path));
    defaults.set("kestro.customFanRPM", 3500.0);
    defaults.flush();

    EXPECT_EQ(parsePreferenceJson(contentsOf(path))->dump(),
              R"({"kestro.showMemory":false,"later":null,"kestro.isPinned":true,"kestro.customFanRPM":3500.0})");
}

TEST_F(PreferenceWriters, RemoveTheTemporaryFilesOfDeadProcessesAtStart) {
    write("{}");
    const pid_t dead = ::fork();
    if (dead == 0) {
        ::_exit(0);
    }
    ASSERT_EQ(::waitpid(dead, nullptr, 0), dead);
    std::ofstream(path.string() + ".new-" + std::to_string(dead)) << "half a fi";
    for (const char* other : {".new-", ".new-12x", ".new-0", ".newer", ".damaged"}) {
        std::ofstream(path.string() + other) << "something else";
    }
    std::ofstream(path.string() + ".new-" + std::to_string(::getppid())) << "of a living process";

    open();

    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json", "preferences.json.new-",
                                                         "preferences.json.new-12x", "preferences.json.new-0",
                                                         "preferences.json.newer", "preferences.json.damaged",
                                                         "preferences.json.new-" + std::to_string(::getppid())));
}

TEST_F(PreferenceWriters, KeepANumberOutOfRangeInTheFile) {
    write(R"({"kestro.customFanRPM": 1e999, "kestro.isPinned": true, "n": [-2E+400]})");
    {
        auto defaults = open();
        EXPECT_EQ(defaults.object("kestro.customFanRPM"), std::nullopt) << "takes its default";
        EXPECT_EQ(defaults.object("kestro.isPinned"), PreferenceValue(true));
        defaults.set("kestro.showMemory", false);
    }

    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
    EXPECT_EQ(contentsOf(path), R"({
  "kestro.customFanRPM": 1e999,
  "kestro.isPinned": true,
  "n": [
    -2E+400
  ],
  "kestro.showMemory": false
}
)");
}

TEST_F(PreferenceWriters, ReplaceANumberOutOfRangeWhenItsPreferenceChanges) {
    write(R"({"kestro.customFanRPM": 1e999})");
    {
        auto defaults = open();
        defaults.set("kestro.customFanRPM", 3500.0);
    }

    EXPECT_EQ(parsePreferenceJson(contentsOf(path))->dump(), R"({"kestro.customFanRPM":3500.0})");
}

TEST(OverflowingNumbers, AreFoundOutsideTextOnly) {
    const std::string text = R"({"1e999":"1e999 \" 1e999","number:":[1e999,"number:1",1.5e3,-0.0,1e-999]})";

    const auto document = parsePreferenceJson(text);

    ASSERT_TRUE(document);
    EXPECT_TRUE(holdsOverflowingNumber(*document));
    EXPECT_EQ(dumpWithOverflowingNumbers(*document, -1),
              R"({"1e999":"1e999 \" 1e999","number:":[1e999,"number:1",1500.0,-0.0,0.0]})");
}

TEST(OverflowingNumbers, DoNotExcuseDamage) {
    for (const char* text : {R"({"a": 1e999, "b": tr})", "1e999e", "[1e999", "{1e999: 1}", "1e999 1"}) {
        EXPECT_EQ(parsePreferenceJson(text), std::nullopt) << text;
    }
}

TEST(OverflowingNumbers, AreNotImitatedByEscapes) {
    EXPECT_EQ(parsePreferenceJson(R"([1e999, "\u006eumber:1"])"), std::nullopt);
}

TEST(OverflowingNumbers, MakeTheValueAroundThemUnknown) {
    EXPECT_EQ(decodePreference(*parsePreferenceJson(R"({"json": {"lowTemp": 1e999}})")), std::nullopt);
}

}  // namespace
}  // namespace kestro
