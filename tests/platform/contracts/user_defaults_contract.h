#pragma once

#include "core/platform/user_defaults.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace kestro {

/// What every UserDefaults promises. A Subject has `port()`, without any preference.
template <typename Subject>
class UserDefaultsContract : public testing::Test {
protected:
    Subject subject;
};
TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, HasNothingUnderAnUnusedKey) {
    EXPECT_FALSE(this->subject.port().object("kestro.test"));
}

TYPED_TEST_P(UserDefaultsContract, ReadsWhatWasWrittenWithItsKind) {
    UserDefaults& defaults = this->subject.port();
    const PreferenceValue values[] = {true,
                                      false,
                                      std::int64_t{0},
                                      std::int64_t{1},
                                      std::numeric_limits<std::int64_t>::max(),
                                      std::numeric_limits<std::int64_t>::min(),
                                      0.0,
                                      1.0,
                                      -2.5e-300,
                                      std::string(),
                                      std::string("Celsius (°C) \"🎛\""),
                                      PreferenceData{},
                                      PreferenceData{0, 0xFF, 34}};

    for (const auto& value : values) {
        defaults.set("kestro.test", value);
        EXPECT_EQ(defaults.object("kestro.test"), value) << "kind " << value.index();
    }
}

TYPED_TEST_P(UserDefaultsContract, KeepsKeysApart) {
    UserDefaults& defaults = this->subject.port();

    defaults.set("kestro.one", std::int64_t{1});
    defaults.set("kestro.two", std::int64_t{2});
    defaults.set("kestro.one", std::int64_t{3});

    EXPECT_EQ(defaults.object("kestro.one"), PreferenceValue(std::int64_t{3}));
    EXPECT_EQ(defaults.object("kestro.two"), PreferenceValue(std::int64_t{2}));
    EXPECT_FALSE(defaults.object("kestro"));
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, HasNothingUnderAnUnusedKey, ReadsWhatWasWrittenWithItsKind,
                            KeepsKeysApart);

}  // namespace kestro
