#include "platform/desktop/wayland_lock.h"

#include "tests/platform/desktop/compositor_socket.h"
#include "tests/platform/desktop/desktop_power_assertions_fixture.h"
#include "tests/support/silent_socket.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace kestro {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

struct WaylandLockTest : testing::Test {
    void ask(std::chrono::milliseconds patience = 20s) {
        lock.emplace(QString::fromStdString(path), patience, [this] { ++changes; });
    }

    bool settlesAs(LockState state) {
        return waitUntil([&] { return lock->state() == state; });
    }

    const TemporaryDirectory folder;
    const std::string path = folder / "wayland-1";
    std::optional<WaylandLock> lock;
    int changes = 0;
};

TEST_F(WaylandLockTest, HoldsTheScreensWithATransparentPixelUntilItIsReleased) {
    CompositorSocket socket(path);

    ask();
    EXPECT_EQ(lock->state(), LockState::asking);
    ASSERT_TRUE(settlesAs(LockState::held));
    EXPECT_TRUE(socket.isInhibited());
    EXPECT_EQ(socket.pixel(), std::string(4, '\0'));
    EXPECT_THAT(socket.compositor()->errors(), IsEmpty());
    EXPECT_EQ(changes, 1);
    lock.reset();

    EXPECT_TRUE(waitUntil([&] { return !socket.hasClient(); }));
}

TEST_F(WaylandLockTest, IsRefusedAtOnceWithoutACompositor) {
    ask();
    EXPECT_EQ(lock->state(), LockState::refused);

    lock.emplace(QString(200, QLatin1Char('x')), 20s, [this] { ++changes; });
    EXPECT_EQ(lock->state(), LockState::refused);
    EXPECT_EQ(changes, 0);
}

TEST_F(WaylandLockTest, LeavesACompositorThatLacksAProtocol) {
    CompositorSocket socket(path);
    std::erase(socket.offered, "zwlr_layer_shell_v1");

    ask();

    ASSERT_TRUE(settlesAs(LockState::refused));
    EXPECT_TRUE(waitUntil([&] { return socket.clients() == 1 && !socket.hasClient(); }));
}

TEST_F(WaylandLockTest, ACompositorThatDoesNotAnswerHasRefused) {
    const SilentSocket socket(path);

    ask(30ms);
    EXPECT_EQ(lock->state(), LockState::asking);

    EXPECT_TRUE(settlesAs(LockState::refused));
    EXPECT_EQ(changes, 1);
}

TEST_F(WaylandLockTest, IsLostWithTheCompositor) {
    std::optional<CompositorSocket> socket(path);
    ask();
    ASSERT_TRUE(settlesAs(LockState::held));

    socket.reset();

    EXPECT_TRUE(settlesAs(LockState::refused));
    EXPECT_EQ(changes, 2);
}

TEST_F(WaylandLockTest, IsLostWithTheScreenAndHeldAgainOnTheNext) {
    CompositorSocket socket(path);
    ask();
    ASSERT_TRUE(settlesAs(LockState::held));

    socket.send(socket.compositor()->unplugScreen());
    ASSERT_TRUE(settlesAs(LockState::refused));
    socket.send(socket.compositor()->plugScreen());

    EXPECT_TRUE(settlesAs(LockState::held));
    EXPECT_TRUE(socket.isInhibited());
    EXPECT_EQ(socket.clients(), 1);
}

TEST_F(WaylandLockTest, PollingProcessesWhatHasArrivedWithoutACallback) {
    const CompositorSocket socket(path);
    ask();
    ASSERT_TRUE(settlesAs(LockState::held));
    socket.send(FakeCompositor::error());

    lock->poll();

    EXPECT_EQ(lock->state(), LockState::refused);
    EXPECT_EQ(changes, 1);
}

/// Sets a variable, and restores it.
class ChangedVariable {
public:
    ChangedVariable(const char* name, const char* value) : name_(name), former_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~ChangedVariable() { former_.isNull() ? qunsetenv(name_) : qputenv(name_, former_); }
    ChangedVariable(const ChangedVariable&) = delete;
    ChangedVariable& operator=(const ChangedVariable&) = delete;

private:
    const char* const name_;
    const QByteArray former_;
};

TEST(WaylandSession, IsOnWaylandUnlessItsTypeIsX11) {
    for (const auto& [type, display, expected] :
         {std::tuple{"wayland", "", true}, std::tuple{"tty", "wayland-1", true}, std::tuple{"tty", "", false},
          std::tuple{"", "wayland-1", true}, std::tuple{"x11", "wayland-1", false}}) {
        const ChangedVariable sessionType("XDG_SESSION_TYPE", type);
        const ChangedVariable waylandDisplay("WAYLAND_DISPLAY", display);

        EXPECT_EQ(BusLockServices::runsOnWayland(), expected) << type << ", " << display;
    }
}

TEST(WaylandSession, HasTheCompositorsSocketInTheRuntimeFolderOrAtAPath) {
    const ChangedVariable folder("XDG_RUNTIME_DIR", "/run/user/7");
    for (const auto& [name, expected] :
         {std::pair{"wayland-1", "/run/user/7/wayland-1"},
          std::pair{"/elsewhere/wayland-0", "/elsewhere/wayland-0"}, std::pair{"", ""}}) {
        const ChangedVariable display("WAYLAND_DISPLAY", name);

        EXPECT_EQ(WaylandLock::socketOfSession().toStdString(), expected);
    }
}

}  // namespace
}  // namespace kestro
