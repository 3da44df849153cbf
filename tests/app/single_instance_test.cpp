#include "app/single_instance.h"

#include "platform/simulated/simulated_mac.h"

#include <QApplication>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kestro {
namespace {

/// A session without a bus, on a display unique to this test process.
struct SingleInstanceTest : ::testing::Test {
    const QDBusConnection noBus{QStringLiteral("no such bus")};
    const QString display = QStringLiteral(":test-%1").arg(getpid());
    SimulatedMac mac;
    int calls = 0;

    SingleInstance start(const QString& onDisplay) {
        return {noBus, onDisplay, [this] { ++calls; }};
    }
    void deliver() {
        for (int turn = 0; turn < 3; ++turn) {
            QApplication::processEvents();
        }
    }
};

TEST_F(SingleInstanceTest, IsTheFirstOfItsDisplay) {
    EXPECT_TRUE(start(display).isFirst());
}

TEST_F(SingleInstanceTest, DetectsAnotherInstance) {
    const SingleInstance first = start(display);

    EXPECT_FALSE(start(display).isFirst());
}

TEST_F(SingleInstanceTest, NotifiesTheFirstOnce) {
    const SingleInstance first = start(display);

    SingleInstance second = start(display);
    second.callFirst(mac.notifications);
    deliver();

    EXPECT_EQ(calls, 1);
}

TEST_F(SingleInstanceTest, IsFirstAgainAfterTheOtherHasEnded) {
    { const SingleInstance first = start(display); }

    EXPECT_TRUE(start(display).isFirst());
}

TEST_F(SingleInstanceTest, LetsAnotherBeFirstAfterRelease) {
    SingleInstance first = start(display);

    first.release();

    EXPECT_FALSE(first.isFirst());
    EXPECT_TRUE(start(display).isFirst());
}

TEST_F(SingleInstanceTest, IgnoresOtherDisplays) {
    const SingleInstance first = start(display);

    EXPECT_TRUE(start(display + QStringLiteral(".1")).isFirst());
}

TEST_F(SingleInstanceTest, AcceptsADisplayNameOfAnyLength) {
    const QString longName(5000, QLatin1Char('x'));
    const SingleInstance first = start(longName);

    EXPECT_TRUE(first.isFirst());
    EXPECT_FALSE(start(longName).isFirst());
}

}  // namespace
}  // namespace kestro
