#include "platform/desktop/lock_mechanism.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kestro {
namespace {

using enum LockMechanism;
using Mechanisms = std::vector<LockMechanism>;
using testing::ElementsAre;
using testing::IsEmpty;

const LockWish displayAndSystem{true, {}};
const LockWish systemOnly{false, {}};
const LockSession x11{};
const LockSession wayland{.isSandboxed = false, .isWayland = true};

Mechanisms planned(const LockWish& wish, const LockSession& session, const Mechanisms& usable) {
    return plannedMechanisms(wish, session,
                             [&](LockMechanism mechanism) { return std::ranges::count(usable, mechanism) > 0; });
}

TEST(PlannedMechanisms, TheCompositorCountsOnWaylandWithoutGNOMEOrKDE) {
    EXPECT_THAT(planned(displayAndSystem, wayland, {logindIdle, logindSleep, waylandIdleInhibitor}),
                ElementsAre(logindIdle, logindSleep, waylandIdleInhibitor));
    EXPECT_THAT(planned(displayAndSystem, wayland, {freedesktopPowerManagement, waylandIdleInhibitor}),
                ElementsAre(freedesktopPowerManagement, waylandIdleInhibitor));
    EXPECT_THAT(planned(displayAndSystem, wayland, {gnomeSessionManager, waylandIdleInhibitor}),
                ElementsAre(gnomeSessionManager));
    EXPECT_THAT(planned(displayAndSystem, wayland, {kdePolicyAgent, waylandIdleInhibitor}),
                ElementsAre(kdePolicyAgent));
    EXPECT_THAT(planned(systemOnly, wayland, {logindSleep, waylandIdleInhibitor}), ElementsAre(logindSleep));
    EXPECT_THAT(planned(displayAndSystem, x11, {waylandIdleInhibitor}), IsEmpty());
}

TEST(PlannedMechanisms, TheCompositorCountsBesideThePortal) {
    const LockSession sandboxed{.isSandboxed = true, .isWayland = true};

    EXPECT_THAT(planned(displayAndSystem, sandboxed, {portalIdle, portalSuspend, waylandIdleInhibitor}),
                ElementsAre(portalSuspend, portalIdle, waylandIdleInhibitor));
}

TEST(PlannedMechanisms, TheTimersOfAnXServerInsideWaylandDoNotCount) {
    EXPECT_THAT(planned(displayAndSystem, wayland, {gnomeSessionManager, x11ScreenSaver}),
                ElementsAre(gnomeSessionManager));
    EXPECT_THAT(planned(displayAndSystem, x11, {gnomeSessionManager, x11ScreenSaver}),
                ElementsAre(gnomeSessionManager, x11ScreenSaver));
}

TEST(LocksInEffect, LogindAloneDoesNotKeepTheDisplayOnOnWayland) {
    const Mechanisms logind{logindIdle, logindSleep};

    EXPECT_FALSE(fulfils(logind, displayAndSystem, wayland));
    EXPECT_TRUE(fulfils(logind, displayAndSystem, x11));
    EXPECT_TRUE(fulfils(logind, systemOnly, wayland));
    for (const auto other : {gnomeSessionManager, kdePolicyAgent, freedesktopPowerManagement, portalIdle,
                             screenSaver, waylandIdleInhibitor}) {
        EXPECT_TRUE(fulfils({logindIdle, other}, displayAndSystem, wayland)) << holderName(other, {});
    }
}

TEST(LocksInEffect, AreNoneWithoutALock) {
    EXPECT_FALSE(fulfils({}, displayAndSystem, x11));
    EXPECT_FALSE(fulfils({}, systemOnly, wayland));
}

TEST(HolderName, IsTheCompositorsWhereTheDesktopNamesIt) {
    EXPECT_EQ(holderName(waylandIdleInhibitor, QStringLiteral("sway")), "Sway");
    EXPECT_EQ(holderName(waylandIdleInhibitor, QStringLiteral("labwc:wlroots")), "Labwc");
    EXPECT_EQ(holderName(waylandIdleInhibitor, QStringLiteral("MATE")), "Wayland compositor");
    EXPECT_EQ(holderName(waylandIdleInhibitor, {}), "Wayland compositor");
    EXPECT_EQ(holderName(gnomeSessionManager, QStringLiteral("sway:MATE")), "MATE");
}

}  // namespace
}  // namespace kestro
