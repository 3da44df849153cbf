#include "platform/desktop/wayland_idle_inhibition.h"

#include "tests/platform/desktop/fake_compositor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace kestro {
namespace {

using test::FakeCompositor;
using testing::IsEmpty;

struct WaylandIdleInhibitionTest : testing::Test {
    /// Passes events on until both sides have nothing more to say.
    void converse(std::string events = {}) {
        do {
            inhibition.receive(events);
            const auto requests = inhibition.takeRequests();
            pixels += requests.needsPixel ? 1 : 0;
            events = compositor.answer(requests.bytes);
        } while (!events.empty());
    }

    FakeCompositor compositor;
    WaylandIdleInhibition inhibition;
    int pixels = 0;
};

TEST_F(WaylandIdleInhibitionTest, HoldsWhileItsSurfaceIsOnAScreen) {
    EXPECT_EQ(inhibition.state(), LockState::asking);

    converse();

    EXPECT_EQ(inhibition.state(), LockState::held);
    EXPECT_TRUE(compositor.isInhibited());
    EXPECT_EQ(pixels, 1);
    EXPECT_THAT(compositor.errors(), IsEmpty());
}

TEST_F(WaylandIdleInhibitionTest, IsOverWhereTheCompositorLacksAProtocol) {
    for (const std::string missing :
         {"wl_compositor", "wl_shm", "zwlr_layer_shell_v1", "zwp_idle_inhibit_manager_v1"}) {
        FakeCompositor other;
        std::erase(other.offered, missing);
        WaylandIdleInhibition asked;

        asked.receive(other.answer(asked.takeRequests().bytes));

        EXPECT_TRUE(asked.isOver()) << missing;
        EXPECT_EQ(asked.state(), LockState::refused) << missing;
        EXPECT_THAT(asked.takeRequests().bytes, IsEmpty()) << missing;
    }
}

TEST_F(WaylandIdleInhibitionTest, IsNotHeldBeforeTheCompositorHasProcessedTheInhibitor) {
    std::string events = compositor.answer(inhibition.takeRequests().bytes);
    while (compositor.count("zwp_idle_inhibitor_v1") == 0) {
        inhibition.receive(events);
        EXPECT_EQ(inhibition.state(), LockState::asking);
        events = compositor.answer(inhibition.takeRequests().bytes);
    }
    inhibition.receive(events);

    EXPECT_EQ(inhibition.state(), LockState::held);
}

TEST_F(WaylandIdleInhibitionTest, IsLostWithTheScreenAndTakenAgainOnTheNext) {
    converse();

    converse(compositor.unplugScreen());
    EXPECT_EQ(inhibition.state(), LockState::refused);
    EXPECT_FALSE(inhibition.isOver());
    EXPECT_EQ(compositor.count("wl_surface"), 0);
    EXPECT_EQ(compositor.count("zwp_idle_inhibitor_v1"), 0);
    converse(compositor.plugScreen());

    EXPECT_EQ(inhibition.state(), LockState::held);
    EXPECT_TRUE(compositor.isInhibited());
    EXPECT_EQ(compositor.count("zwp_idle_inhibitor_v1"), 1);
    EXPECT_EQ(pixels, 1);
    EXPECT_THAT(compositor.errors(), IsEmpty());
}

TEST_F(WaylandIdleInhibitionTest, MovesToAnotherScreen) {
    compositor.screens = 2;
    converse();

    converse(compositor.unplugScreen());

    EXPECT_EQ(inhibition.state(), LockState::held);
    EXPECT_TRUE(compositor.isInhibited());
    EXPECT_EQ(compositor.count("wl_surface"), 1);
    EXPECT_EQ(compositor.count("zwp_idle_inhibitor_v1"), 1);
}

TEST_F(WaylandIdleInhibitionTest, GivesUpOnACompositorThatClosesEverySurface) {
    compositor.screens = 3;
    compositor.closesSurfaces = true;

    converse();

    EXPECT_EQ(inhibition.state(), LockState::refused);
    EXPECT_EQ(compositor.count("wl_surface"), 0);
}

TEST_F(WaylandIdleInhibitionTest, WaitsForAScreenWhereThereIsNone) {
    compositor.screens = 0;

    converse();
    EXPECT_EQ(inhibition.state(), LockState::refused);
    converse(compositor.plugScreen());

    EXPECT_EQ(inhibition.state(), LockState::held);
    EXPECT_THAT(compositor.errors(), IsEmpty());
}

TEST_F(WaylandIdleInhibitionTest, AFurtherScreenChangesNothing) {
    converse();

    converse(compositor.plugScreen());
    converse(compositor.reconfigure());

    EXPECT_EQ(inhibition.state(), LockState::held);
    EXPECT_EQ(compositor.count("wl_surface"), 1);
    EXPECT_EQ(compositor.count("zwp_idle_inhibitor_v1"), 1);
    EXPECT_THAT(compositor.errors(), IsEmpty());
}

TEST_F(WaylandIdleInhibitionTest, EndsWithAnErrorOfTheCompositor) {
    converse();

    inhibition.receive(FakeCompositor::error());

    EXPECT_EQ(inhibition.state(), LockState::refused);
    EXPECT_TRUE(inhibition.isOver());
}

TEST_F(WaylandIdleInhibitionTest, EndsWithBytesThatAreNoEvent) {
    inhibition.receive(std::string(64, '\xff'));

    EXPECT_TRUE(inhibition.isOver());
    EXPECT_EQ(inhibition.state(), LockState::refused);
}

}  // namespace
}  // namespace kestro
