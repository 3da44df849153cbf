#include "tests/platform/desktop/desktop_power_assertions_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::IsEmpty;

QDBusMessage sleepSignal(const QVariantList& arguments) {
    auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
                                             QStringLiteral("org.freedesktop.login1.Manager"),
                                             QStringLiteral("PrepareForSleep"));
    signal.setArguments(arguments);
    return signal;
}

void announceSleep(const QDBusConnection& sender, bool isAboutToSleep) {
    ASSERT_TRUE(sender.send(sleepSignal({isAboutToSleep})));
}

TEST_F(DesktopPowerAssertionsTest, LogindTakesOverWhenTheSessionBusDies) {
    const auto gnome = service(gnomeSessionManager);
    const auto logind = service(logindIdle);
    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"GNOME", "logind"}; }));

    sessionBus.kill();

    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"logind"}; }));
    ASSERT_TRUE(waitForLocking(*logind, 2));
    EXPECT_EQ(locking(*logind).back(), "Inhibit(\"sleep\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block\")");
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, AreLostWithTheSessionBusAndTakenAgainWhenItIsBack) {
    auto gnome = service(gnomeSessionManager);
    const auto id = create();
    ASSERT_TRUE(id.has_value());

    sessionBus.kill();
    ASSERT_TRUE(isReported(ReportState::lost));
    gnome.reset();
    sessionBus.restart();
    gnome = service(gnomeSessionManager);

    ASSERT_TRUE(waitForLocking(*gnome, 1));
    EXPECT_TRUE(isReported(ReportState::held));
    EXPECT_THAT(revoked, IsEmpty());
    assertions().release(*id);
    ASSERT_TRUE(waitForLocking(*gnome, 2));
    EXPECT_EQ(locking(*gnome).back(), "Uninhibit(2u)");
}

TEST_F(DesktopPowerAssertionsTest, AreRefusedWhileTheOnlyBusIsDown) {
    const auto gnome = service(gnomeSessionManager);
    assertions().release(create().value());
    sessionBus.kill();
    ASSERT_TRUE(waitUntil([&] { return !sessionLink.isConnected(); }));
    gnome->settle(session);

    ASSERT_TRUE(waitUntil([&] { return create() == std::nullopt; }));
}

TEST_F(DesktopPowerAssertionsTest, EachLockIsConfirmedAfterASuspend) {
    const auto gnome = service(gnomeSessionManager);
    const auto logind = service(logindIdle);
    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"GNOME", "logind"}; }));
    gnome->answer(QStringLiteral("IsInhibited"), [](const auto& call) { return call.createReply(false); });

    announceSleep(logind->connection(), true);
    announceSleep(logind->connection(), false);

    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"logind"}; }));
    ASSERT_TRUE(waitForLocking(*gnome, 2));
    EXPECT_EQ(locking(*gnome).back(), "Uninhibit(1u)");
}

TEST_F(DesktopPowerAssertionsTest, ALockIsLostIfItsServiceIsSilentAfterASuspend) {
    options.timing.patience = 2s;
    const auto gnome = service(gnomeSessionManager);
    const auto logind = service(logindIdle);
    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"GNOME", "logind"}; }));
    gnome->hold(true);

    announceSleep(logind->connection(), false);

    EXPECT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"logind"}; }));
}

TEST_F(DesktopPowerAssertionsTest, OnlyLogindAnnouncesTheEndOfASuspend) {
    const auto gnome = service(gnomeSessionManager);
    const auto logind = service(logindIdle);
    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"GNOME", "logind"}; }));
    const auto questions = [&] { return std::ranges::count(gnome->calls(), "IsInhibited(12u)"); };
    ASSERT_EQ(questions(), 1);

    announceSleep(systemBus.connect(), false);
    ASSERT_TRUE(logind->connection().send(sleepSignal({})));
    ASSERT_TRUE(logind->connection().send(sleepSignal({QStringLiteral("false")})));
    announceSleep(logind->connection(), false);

    ASSERT_TRUE(waitUntil([&] { return questions() > 1; }));
    gnome->settle(session);
    EXPECT_EQ(questions(), 2);
}

TEST_F(DesktopPowerAssertionsTest, ReportTheHoldersThatAnswerLater) {
    const auto gnome = service(gnomeSessionManager);
    const auto logind = service(logindIdle);
    gnome->hold(true);

    ASSERT_TRUE(create().has_value());
    EXPECT_THAT(holders(), testing::ElementsAre("logind"));
    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 1; }));
    gnome->hold(false);
    gnome->answerHeld();

    EXPECT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"GNOME", "logind"}; }));
}

TEST_F(DesktopPowerAssertionsTest, AServiceThatIsStillStartingIsAskedAgain) {
    const auto logind = service(logindIdle);
    const auto power = service(freedesktopPowerManagement);
    power->refuse(QStringLiteral("Inhibit"), QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"logind"}; }));

    grant(*power, freedesktopPowerManagement);

    EXPECT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"Xfce", "logind"}; }));
}

}  // namespace
}  // namespace kestro
