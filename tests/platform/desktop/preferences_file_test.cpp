#include "platform/desktop/preferences_file.h"

#include "platform/desktop/preference_json.h"
#include "tests/platform/desktop/json_user_defaults_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace kestro {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class PreferencesFileTest : public JsonUserDefaultsTest {};

TEST_F(PreferencesFileTest, PreservesUnknownKeys) {
    write(R"({"later.version": {"deep": [1, null]}, "kestro.isPinned": false, "nothing": null, "n": 1})");
    {
        auto defaults = open();
        EXPECT_EQ(defaults.object("later.version"), std::nullopt);
        defaults.set("kestro.isPinned", true);
    }

    const auto json = parsePreferenceJson(contentsOf(path));
    EXPECT_EQ(json->dump(), R"({"later.version":{"deep":[1,null]},"kestro.isPinned":true,"nothing":null,"n":1})");
}

TEST_F(PreferencesFileTest, PreservesConcurrentChangesOfOtherPrograms) {
    auto defaults = open();
    write(R"({"other": "new", "kestro.isPinned": false})");

    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_EQ(stored("other"), PreferenceValue(std::string("new")));
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(PreferencesFileTest, RewritesAVanishedFileCompletely) {
    write(R"({"kestro.showMemory": false, "later": null})");
    auto defaults = open();
    fs::remove(path);

    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_EQ(parsePreferenceJson(contentsOf(path))->dump(),
              R"({"kestro.showMemory":false,"later":null,"kestro.isPinned":true})");
}

TEST_F(PreferencesFileTest, OnlyTheUserCanAccessFileAndDirectory) {
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

class DamagedPreferences : public PreferencesFileTest, public testing::WithParamInterface<std::string> {};

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

TEST_F(PreferencesFileTest, AnEmptyFileHoldsNoValues) {
    write("");
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
}

TEST_F(PreferencesFileTest, KeepsEarlierDamagedFiles) {
    for (const std::string text : {"one", "two", "three"}) {
        write(text);
        open();
    }

    EXPECT_EQ(contentsOf(path.string() + ".damaged"), "one");
    EXPECT_EQ(contentsOf(path.string() + ".damaged.2"), "two");
    EXPECT_EQ(contentsOf(path.string() + ".damaged.3"), "three");
}

TEST_F(PreferencesFileTest, KeepsADamagedFileThatCannotBeSetAside) {
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

TEST_F(PreferencesFileTest, AFileDamagedMeanwhileIsSetAsideAndRewrittenFromMemory) {
    write(R"({"kestro.showMemory": false})");
    auto defaults = open();
    write("{\"half");

    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_EQ(contentsOf(path.string() + ".damaged"), "{\"half");
    EXPECT_EQ(stored("kestro.showMemory"), PreferenceValue(false));
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(PreferencesFileTest, LeavesAnythingButARegularFileAlone) {
    fs::create_directories(path.parent_path());
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_TRUE(fs::is_fifo(path));
    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
}

TEST_F(PreferencesFileTest, KeepsALinkToTheNullDevice) {
    fs::create_directories(path.parent_path());
    fs::create_symlink("/dev/null", path);
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_EQ(fs::read_symlink(path), "/dev/null");
}

TEST_F(PreferencesFileTest, RetriesAFailedWriteWithTheNextChange) {
    const fs::path obstacle = path.parent_path().parent_path();
    std::ofstream(obstacle) << "a file where the directory belongs";
    auto defaults = open();

    defaults.set("kestro.isPinned", true);
    passTheRest();
    EXPECT_EQ(defaults.object("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(runLoop.waitingBackgroundTasks(), 0U) << "the write is not retried continuously";
    fs::remove(obstacle);
    defaults.set("kestro.showMemory", false);
    passTheRest();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(stored("kestro.showMemory"), PreferenceValue(false));
}

TEST_F(PreferencesFileTest, AFullDiskLeavesTheOldFileIntact) {
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

TEST_F(PreferencesFileTest, NeverWritesWhatItCouldNotReadBack) {
    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    defaults.flush();

    defaults.set("huge", std::string(2 * maximumPreferenceBytes, 'x'));
    defaults.flush();

    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
    EXPECT_EQ(stored("huge"), std::nullopt);
}

TEST_F(PreferencesFileTest, WritesOneLineIfOnlyThatIsWithinTheLimits) {
    constexpr int depth = 30;
    std::string deep = '"' + std::string(40, 'x') + '"';
    for (int count = 1; count < maximumPreferenceElements - 2 * depth; ++count) {
        deep += ",\"" + std::string(40, 'x') + '"';
    }
    deep = std::string(depth, '[') + deep + std::string(depth, ']');
    write("{\"deep\":" + deep + "}");
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_EQ(contentsOf(path), "{\"deep\":" + deep + ",\"kestro.isPinned\":true}\n");
}

TEST_F(PreferencesFileTest, ReplacesTheTemporaryFileOfACrash) {
    write("{}");
    std::ofstream(path.string() + ".new-" + std::to_string(::getpid())) << "half a fi";
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(PreferencesFileTest, KeepsTheTemporaryFileOfAnotherProcess) {
    write("{}");
    const std::string ofAnother = path.string() + ".new-" + std::to_string(::getppid());
    std::ofstream(ofAnother) << "half a fi";
    {
        auto defaults = open();
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_EQ(std::filesystem::file_size(ofAnother), 9U);
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

}  // namespace
}  // namespace kestro
