#include "platform/macos/mac_user_defaults.h"

#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace kestro {
namespace {

using fakes::FakeDictionary;
using fakes::FakeList;
using fakes::FakeMac;
using fakes::FakeValue;
using fakes::OddObject;
using fakes::UnpairedSurrogate;

TEST(MacUserDefaults, PreservesTheKindOfEveryValue) {
    FakeMac mac;
    MacUserDefaults defaults;
    const PreferenceValue values[] = {true,
                                      false,
                                      std::int64_t{0},
                                      std::int64_t{1},
                                      std::numeric_limits<std::int64_t>::min(),
                                      1.0,
                                      -0.5,
                                      std::string(),
                                      std::string("Celsius (°C) 🎛"),
                                      PreferenceData{},
                                      PreferenceData{0, 0xFF, 34}};

    for (const auto& value : values) {
        defaults.set("kestro.test", value);
        EXPECT_EQ(defaults.object("kestro.test"), value);
    }
}

TEST(MacUserDefaults, HasNothingUnderAnUnusedKey) {
    FakeMac mac;
    const MacUserDefaults defaults;

    EXPECT_FALSE(defaults.object("kestro.test"));
}

TEST(MacUserDefaults, IgnoresValuesOfOtherKinds) {
    FakeMac mac;
    mac.runLoop.preferences = {{"date", {OddObject{}}},
                               {"broken", {UnpairedSurrogate{}}},
                               {"list", {FakeList{{true}}}},
                               {"dictionary", {FakeDictionary{{"a", {true}}}}}};
    const MacUserDefaults defaults;

    for (const char* key : {"date", "broken", "list", "dictionary"}) {
        EXPECT_FALSE(defaults.object(key)) << key;
    }
}

TEST(MacUserDefaults, KeepsTheOldValueWhenTheNewOneCannotBeStored) {
    FakeMac mac;
    MacUserDefaults defaults;
    defaults.set("kestro.test", std::int64_t{1});

    defaults.set("kestro.test", std::string("\xFF"));
    defaults.set("\xFF", true);

    EXPECT_EQ(defaults.object("kestro.test"), PreferenceValue(std::int64_t{1}));
    EXPECT_EQ(mac.runLoop.preferences.size(), 1U);
}

TEST(MacUserDefaults, FlushesInTheEnd) {
    FakeMac mac;
    {
        MacUserDefaults defaults;
        defaults.set("kestro.test", true);
        EXPECT_EQ(mac.runLoop.synchronizations, 0);
    }
    EXPECT_EQ(mac.runLoop.synchronizations, 1);
}

TEST(MacUserDefaults, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac& mac) { mac.runLoop.preferences["old"] = {std::string("value")}; },
                        [](FakeMac&) {
                            MacUserDefaults defaults;
                            defaults.object("old");
                            defaults.set("integer", std::int64_t{1});
                            defaults.object("integer");
                            defaults.set("double", 1.5);
                            defaults.object("double");
                            defaults.set("text", std::string("text"));
                            defaults.set("data", PreferenceData{1, 2, 3});
                            defaults.object("data");
                            defaults.set("flag", true);
                            defaults.object("flag");
                        });
}

}  // namespace
}  // namespace kestro
