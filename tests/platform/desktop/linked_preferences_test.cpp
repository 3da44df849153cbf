#include "platform/desktop/preference_json.h"
#include "tests/platform/desktop/json_user_defaults_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>

namespace kestro {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class LinkedPreferences : public JsonUserDefaultsTest {
protected:
    LinkedPreferences() {
        fs::create_directories(path.parent_path());
        fs::create_directories(real.parent_path());
        fs::create_symlink("../../dotfiles/current.json", path);
        fs::create_symlink("kestro.json", real.parent_path() / "current.json");
    }

    bool areLinksKept() const {
        return fs::is_symlink(path) && fs::read_symlink(real.parent_path() / "current.json") == "kestro.json";
    }

    /// Outside the preferences directory, behind two links.
    const fs::path real = path.parent_path().parent_path().parent_path() / "dotfiles" / "kestro.json";
};

TEST_F(LinkedPreferences, AreReplacedBehindTheLinks) {
    std::ofstream(real) << R"({"n": 1})";
    {
        auto defaults = open();
        EXPECT_EQ(defaults.object("n"), PreferenceValue(std::int64_t{1}));
        defaults.set("kestro.isPinned", true);
    }

    EXPECT_TRUE(areLinksKept());
    EXPECT_THAT(contentsOf(real), HasSubstr("kestro.isPinned"));
}

TEST_F(LinkedPreferences, AreCreatedBehindTheLinksIfMissing) {
    std::ofstream(real) << R"({"n": 1})";
    auto defaults = open();
    fs::remove_all(real);

    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_TRUE(areLinksKept());
    EXPECT_EQ(parsePreferenceJson(contentsOf(real))->dump(), R"({"n":1,"kestro.isPinned":true})");
}

TEST_F(LinkedPreferences, AreSetAsideBehindTheLinksWhenDamaged) {
    std::ofstream(real) << "{\"half";
    auto defaults = open();

    EXPECT_TRUE(areLinksKept());
    EXPECT_EQ(contentsOf(real.string() + ".damaged"), "{\"half");
    EXPECT_FALSE(fs::exists(real));

    std::ofstream(real) << "{\"again";
    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_TRUE(areLinksKept());
    EXPECT_EQ(contentsOf(real.string() + ".damaged.2"), "{\"again");
    EXPECT_EQ(stored("kestro.isPinned"), PreferenceValue(true));
}

TEST_F(LinkedPreferences, AreLeftAloneInALinkLoop) {
    fs::create_symlink("current.json", real);

    auto defaults = open();
    defaults.set("kestro.isPinned", true);
    defaults.flush();

    EXPECT_TRUE(areLinksKept());
    EXPECT_EQ(fs::read_symlink(real), "current.json");
    EXPECT_THAT(filesInDirectory(), UnorderedElementsAre("preferences.json"));
    EXPECT_EQ(defaults.object("kestro.isPinned"), PreferenceValue(true));
}

}  // namespace
}  // namespace kestro
