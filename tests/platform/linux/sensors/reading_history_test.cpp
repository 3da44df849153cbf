#include "platform/linux/sensors/reading_history.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;

constexpr MonotonicTime start{1h};

TEST(ReadingHistory, SuspectsAWholeNumberOfKelvinsUntilItChanges) {
    for (const double value : {27.8, 16.9}) {
        ReadingHistory history;
        history.note(value, start);
        EXPECT_TRUE(history.seemsConstant(start)) << value;

        history.note(value + 1, start + 1s);
        EXPECT_FALSE(history.seemsConstant(start + 1s)) << value;
    }
}

TEST(ReadingHistory, BelievesAWholeNumberOfDegrees) {
    ReadingHistory history;
    history.note(42, start);

    EXPECT_FALSE(history.seemsConstant(start));
}

TEST(ReadingHistory, SuspectsAReadingThatIsConstantForMinutesAndManyReadings) {
    ReadingHistory twice;
    twice.note(42, start);
    twice.note(42, start + 20min);
    EXPECT_FALSE(twice.seemsConstant(start + 20min)) << "only two readings";

    ReadingHistory often;
    for (int second = 0; second <= 600; ++second) {
        often.note(42, start + std::chrono::seconds{second});
    }
    EXPECT_TRUE(often.seemsConstant(start + 10min));
    often.note(43, start + 11min);
    EXPECT_FALSE(often.seemsConstant(start + 11min));
}

TEST(ReadingHistory, IgnoresReadingsThatNoMachineHas) {
    ReadingHistory history;
    for (const double value : {0.0, -5.0, 10.0, 125.0, 255.0}) {
        history.note(value, start);
    }
    EXPECT_FALSE(history.isMeasuring());
    EXPECT_FALSE(history.seemsConstant(start));

    history.note(40, start);
    history.note(0, start);
    EXPECT_TRUE(history.isMeasuring());
    EXPECT_FALSE(history.hasChanged());
    EXPECT_EQ(history.span(), 0);
}

}  // namespace
}  // namespace kestro
