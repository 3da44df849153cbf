#include "app/base/idle_release.h"

#include "platform/simulated/simulated_mac.h"

#include <gtest/gtest.h>

namespace kestro {
namespace {

using namespace std::chrono_literals;

struct IdleReleaseTest : testing::Test {
    SimulatedMac mac;
    int releases = 0;
    IdleRelease idle{mac.runLoop, mac.clock, [this] { ++releases; }};
};

TEST_F(IdleReleaseTest, ReleasesOnceTenSecondsAfterTheLastWindowHasClosed) {
    idle.setActive(true);
    mac.advance(60s);
    idle.setActive(false);

    mac.advance(9s);
    EXPECT_EQ(releases, 0);
    mac.advance(6s);
    EXPECT_EQ(releases, 1);
    mac.advance(600s);
    EXPECT_EQ(releases, 1);
}

TEST_F(IdleReleaseTest, StartsOverWhenAWindowOpensInBetween) {
    idle.setActive(true);
    idle.setActive(false);
    mac.advance(9s);

    idle.setActive(true);
    mac.advance(60s);
    EXPECT_EQ(releases, 0);
    idle.setActive(false);
    mac.advance(9s);
    EXPECT_EQ(releases, 0);
    mac.advance(6s);

    EXPECT_EQ(releases, 1);
}

TEST_F(IdleReleaseTest, CountsFromTheFirstReportThatNothingIsVisible) {
    idle.setActive(true);
    idle.setActive(false);
    mac.advance(9s);

    idle.setActive(false);
    mac.advance(6s);

    EXPECT_EQ(releases, 1);
}

TEST_F(IdleReleaseTest, NeedsNoTimerWhileNothingWasOpened) {
    idle.setActive(false);

    mac.advance(60s);

    EXPECT_EQ(releases, 0);
}

}  // namespace
}  // namespace kestro
