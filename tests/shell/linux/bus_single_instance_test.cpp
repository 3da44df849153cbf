#include "shell/linux/bus_single_instance.h"

#include "tests/support/event_waiting.h"
#include "tests/support/private_bus.h"

#include <QTimer>

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>

namespace kestro {
namespace {

using std::chrono::milliseconds;

enum class Meeting { bus, socket };

/// Sessions with and without a bus, on a display unique to this test process.
class SingleInstanceTest : public testing::TestWithParam<Meeting> {
protected:
    BusSingleInstance start(const QString& onDisplay, milliseconds patience = std::chrono::seconds(20)) {
        return {connection(), onDisplay,
                [this] {
                    ++calls;
                    return isAnswering;
                },
                patience};
    }
    BusSingleInstance start() { return start(display); }

    QDBusConnection connection() { return bus ? bus->connect() : PrivateBus::none(); }

    std::optional<PrivateBus> bus;
    const QString display = QStringLiteral(":test-%1").arg(getpid());
    int calls = 0;
    bool isAnswering = true;

private:
    void SetUp() override {
        if (GetParam() == Meeting::bus) {
            bus.emplace();
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Meetings, SingleInstanceTest, testing::Values(Meeting::bus, Meeting::socket),
                         [](const auto& row) { return row.param == Meeting::bus ? "OnABus" : "WithoutABus"; });

TEST_P(SingleInstanceTest, IsTheFirst) {
    EXPECT_TRUE(start().isFirst());
    EXPECT_EQ(calls, 0);
}

TEST_P(SingleInstanceTest, CallsTheFirstOnce) {
    const BusSingleInstance first = start();

    EXPECT_FALSE(start().isFirst());

    EXPECT_TRUE(first.isFirst());
    EXPECT_EQ(calls, 1);
}

TEST_P(SingleInstanceTest, IsFirstAgainAfterTheOtherHasEnded) {
    { const BusSingleInstance first = start(); }

    EXPECT_TRUE(start().isFirst());
}

TEST_P(SingleInstanceTest, LetsAnotherBeFirstAfterRelease) {
    BusSingleInstance first = start();

    first.release();

    EXPECT_FALSE(first.isFirst());
    EXPECT_TRUE(start().isFirst());
}

TEST_P(SingleInstanceTest, TakesThePlaceOfAFirstThatIsEnding) {
    BusSingleInstance first = start();
    isAnswering = false;
    QTimer::singleShot(100, [&first] { first.release(); });

    EXPECT_TRUE(start().isFirst());
    EXPECT_GT(calls, 0);
}

TEST_P(SingleInstanceTest, WaitsNoLongerThanItsPatience) {
    const BusSingleInstance first = start();
    isAnswering = false;

    EXPECT_FALSE(start(display, milliseconds(100)).isFirst());
}

TEST_P(SingleInstanceTest, IsAnsweredByTheProcessThatTookThePlaceOfTheFirst) {
    std::optional<BusSingleInstance> first;
    first.emplace(connection(), display, [] { return false; });
    std::optional<BusSingleInstance> heir;
    QTimer::singleShot(100, [&] {
        first.reset();
        heir.emplace(connection(), display, [] { return true; });
    });

    const BusSingleInstance third = start();

    EXPECT_NE(heir->isFirst(), third.isFirst());
}

TEST(SingleInstanceWithoutABus, IgnoresOtherDisplays) {
    const QString display = QStringLiteral(":test-%1").arg(getpid());
    const auto answer = [] { return true; };
    const BusSingleInstance first(PrivateBus::none(), display, answer);

    EXPECT_TRUE(BusSingleInstance(PrivateBus::none(), display + QStringLiteral(".1"), answer).isFirst());
}

TEST(SingleInstanceWithoutABus, AcceptsADisplayNameOfAnyLength) {
    const QString longName = QStringLiteral(":test-%1").arg(getpid()) + QString(5000, QLatin1Char('x'));
    const auto answer = [] { return true; };
    const BusSingleInstance first(PrivateBus::none(), longName, answer);

    EXPECT_TRUE(first.isFirst());
    EXPECT_FALSE(BusSingleInstance(PrivateBus::none(), longName, answer).isFirst());
}

}  // namespace
}  // namespace kestro
