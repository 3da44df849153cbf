#include "platform/macos/mac_user_defaults.h"

#include "platform/macos/mac_clock.h"
#include "platform/macos/mac_run_loop.h"
#include "tests/platform/macos/failing_calls.h"
#include "tests/platform/macos/fakes/fake_mac.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace kestro {
namespace {

using fakes::FakeDictionary;
using fakes::FakeList;
using fakes::FakeMac;
using fakes::FakeValue;
using fakes::OddObject;
using fakes::UnpairedSurrogate;

/// The preferences on the main thread of a faked Mac.
struct Preferences {
    FakeMac mac;
    MacClock clock;
    MacRunLoop runLoop{clock};
    std::unique_ptr<MacUserDefaults> port = std::make_unique<MacUserDefaults>(runLoop);
    MacUserDefaults& defaults = *port;

    std::optional<std::int64_t> stored(const std::string& key) const {
        const auto found = mac.runLoop.storedPreferences.find(key);
        return found == mac.runLoop.storedPreferences.end()
                   ? std::nullopt
                   : std::optional(std::get<std::int64_t>(found->second.content));
    }
};

TEST(MacUserDefaults, PreservesTheKindOfEveryValue) {
    Preferences preferences;
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
        preferences.defaults.set("kestro.test", value);
        EXPECT_EQ(preferences.defaults.object("kestro.test"), value);
    }
}

TEST(MacUserDefaults, HasNothingUnderAnUnusedKey) {
    const Preferences preferences;

    EXPECT_FALSE(preferences.defaults.object("kestro.test"));
}

TEST(MacUserDefaults, IgnoresValuesOfOtherKinds) {
    Preferences preferences;
    preferences.mac.runLoop.preferences = {{"date", {OddObject{}}},
                                           {"broken", {UnpairedSurrogate{}}},
                                           {"list", {FakeList{{true}}}},
                                           {"dictionary", {FakeDictionary{{"a", {true}}}}}};

    for (const char* key : {"date", "broken", "list", "dictionary"}) {
        EXPECT_FALSE(preferences.defaults.object(key)) << key;
    }
}

TEST(MacUserDefaults, KeepsTheOldValueWhenTheNewOneCannotBeStored) {
    Preferences preferences;
    preferences.defaults.set("kestro.test", std::int64_t{1});

    preferences.defaults.set("kestro.test", std::string("\xFF"));
    preferences.defaults.set("\xFF", true);

    EXPECT_EQ(preferences.defaults.object("kestro.test"), PreferenceValue(std::int64_t{1}));
    EXPECT_EQ(preferences.mac.runLoop.preferences.size(), 1U);
}

TEST(MacUserDefaults, StoresTheValuesOfATurnTogetherAtItsEnd) {
    Preferences preferences;

    preferences.defaults.set("one", std::int64_t{1});
    preferences.defaults.set("two", std::int64_t{2});
    preferences.defaults.set("one", std::int64_t{3});
    EXPECT_FALSE(preferences.stored("one"));
    preferences.mac.runLoop.runPending();

    EXPECT_EQ(preferences.stored("one"), 3);
    EXPECT_EQ(preferences.stored("two"), 2);
    EXPECT_EQ(preferences.mac.runLoop.synchronizations, 1);
}

TEST(MacUserDefaults, StoresTheValuesOfEachTurn) {
    Preferences preferences;
    for (std::int64_t turn = 1; turn <= 3; ++turn) {
        preferences.defaults.set("kestro.test", turn);
        preferences.mac.runLoop.runPending();

        EXPECT_EQ(preferences.stored("kestro.test"), turn);
        EXPECT_EQ(preferences.mac.runLoop.synchronizations, turn);
    }
}

TEST(MacUserDefaults, StoresNothingThatAFlushHasStored) {
    Preferences preferences;
    preferences.defaults.set("kestro.test", std::int64_t{1});

    preferences.defaults.flush();
    EXPECT_EQ(preferences.stored("kestro.test"), 1);
    preferences.mac.runLoop.runPending();

    EXPECT_EQ(preferences.mac.runLoop.synchronizations, 1);
}

TEST(MacUserDefaults, FlushesInTheEnd) {
    Preferences preferences;
    preferences.defaults.set("kestro.test", std::int64_t{1});
    EXPECT_EQ(preferences.mac.runLoop.synchronizations, 0);

    preferences.port.reset();
    EXPECT_EQ(preferences.stored("kestro.test"), 1);
    preferences.mac.runLoop.runPending();

    EXPECT_EQ(preferences.mac.runLoop.synchronizations, 1);
}

TEST(MacUserDefaults, HoldsNothingWhenCallsFail) {
    useWithFailingCalls([](FakeMac& mac) { mac.runLoop.preferences["old"] = {std::string("value")}; },
                        [](FakeMac& mac) {
                            const MacClock clock;
                            MacRunLoop runLoop(clock);
                            MacUserDefaults defaults(runLoop);
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
                            mac.runLoop.runPending();
                        });
}

}  // namespace
}  // namespace kestro
