#include "shell/linux/bus_single_instance.h"

#include <QApplication>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kestro {
namespace {

/// A session without a bus, on a display unique to this test process.
struct SingleInstanceTest : testing::Test {
    const QDBusConnection noBus{QStringLiteral("no such bus")};
    const QString display = QStringLiteral(":test-%1").arg(getpid());
    int calls = 0;

    BusSingleInstance start(const QString& onDisplay) {
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
    const BusSingleInstance first = start(display);

    EXPECT_FALSE(start(display).isFirst());
}

TEST_F(SingleInstanceTest, NotifiesTheFirstOnce) {
    const BusSingleInstance first = start(display);

    BusSingleInstance second = start(display);
    second.callFirst([] {});
    deliver();

    EXPECT_EQ(calls, 1);
}

TEST_F(SingleInstanceTest, IsFirstAgainAfterTheOtherHasEnded) {
    { const BusSingleInstance first = start(display); }

    EXPECT_TRUE(start(display).isFirst());
}

TEST_F(SingleInstanceTest, LetsAnotherBeFirstAfterRelease) {
    BusSingleInstance first = start(display);

    first.release();

    EXPECT_FALSE(first.isFirst());
    EXPECT_TRUE(start(display).isFirst());
}

TEST_F(SingleInstanceTest, IgnoresOtherDisplays) {
    const BusSingleInstance first = start(display);

    EXPECT_TRUE(start(display + QStringLiteral(".1")).isFirst());
}

TEST_F(SingleInstanceTest, AcceptsADisplayNameOfAnyLength) {
    const QString longName = display + QString(5000, QLatin1Char('x'));
    const BusSingleInstance first = start(longName);

    EXPECT_TRUE(first.isFirst());
    EXPECT_FALSE(start(longName).isFirst());
}

}  // namespace
}  // namespace kestro
