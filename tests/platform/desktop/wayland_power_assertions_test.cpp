#include "tests/platform/desktop/compositor_socket.h"
#include "tests/platform/desktop/desktop_power_assertions_fixture.h"
#include "tests/support/temporary_directory.h"

#include <optional>

namespace kestro {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

/// A Wayland session whose compositor runs in the test's event loop, so it answers only after `create` has
/// returned.
struct WaylandPowerAssertionsTest : DesktopPowerAssertionsTest {
    WaylandPowerAssertionsTest() {
        options.session.isWayland = true;
        options.waylandSocket = QString::fromStdString(path);
        desktop = QStringLiteral("sway");
        bound = 20ms;
    }

    const TemporaryDirectory folder;
    const std::string path = folder / "wayland-1";
};

TEST_F(WaylandPowerAssertionsTest, TheCompositorHoldsTheDisplay) {
    CompositorSocket socket(path);

    const auto id = create();
    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(isReported(ReportState::held));
    EXPECT_THAT(holders(), ElementsAre("Sway"));
    EXPECT_TRUE(socket.isInhibited());
    assertions().release(*id);

    EXPECT_TRUE(waitUntil([&] { return !socket.hasClient(); }));
}

TEST_F(WaylandPowerAssertionsTest, LogindAloneDoesNotHoldTheDisplay) {
    bound = 10s;
    const auto logind = service(logindIdle);

    EXPECT_EQ(create(), std::nullopt);
    EXPECT_EQ(assertions().report().state, ReportState::refused);
    EXPECT_TRUE(create(systemOnly).has_value());
    EXPECT_EQ(assertions().report().state, ReportState::held);
}

TEST_F(WaylandPowerAssertionsTest, AreRevokedWhenTheCompositorCannotHoldTheDisplay) {
    const auto logind = service(logindIdle);
    CompositorSocket socket(path);
    std::erase(socket.offered, "zwp_idle_inhibit_manager_v1");

    const auto id = create();
    ASSERT_TRUE(id.has_value());

    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
    EXPECT_EQ(assertions().report().state, ReportState::refused);
}

TEST_F(WaylandPowerAssertionsTest, AreLostWithTheCompositorAndTakenAgainWhenItIsBack) {
    const auto logind = service(logindIdle);
    std::optional<CompositorSocket> socket(path);
    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"logind", "Sway"}; }));
    EXPECT_EQ(assertions().report().state, ReportState::held);

    socket.reset();
    ASSERT_TRUE(isReported(ReportState::lost));
    socket.emplace(path);

    ASSERT_TRUE(isReported(ReportState::held));
    EXPECT_TRUE(socket->isInhibited());
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(WaylandPowerAssertionsTest, SystemOnlyNeedsNoCompositor) {
    const auto logind = service(logindSleep);
    CompositorSocket socket(path);

    ASSERT_TRUE(create(systemOnly).has_value());
    ASSERT_TRUE(isReported(ReportState::held));

    EXPECT_THAT(holders(), ElementsAre("logind"));
    EXPECT_EQ(socket.clients(), 0);
}

}  // namespace
}  // namespace kestro
