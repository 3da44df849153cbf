#include "tests/platform/desktop/desktop_power_assertions_fixture.h"

#include <QDBusConnectionInterface>

#include <thread>
#include <utility>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// Ends a service and its connection without running the event loop, so that `session` has not handled it yet.
void crash(std::unique_ptr<FakeService> service, const QDBusConnection& session) {
    const auto uniqueName = service->connection().baseService();
    QDBusConnection::disconnectFromBus(service->connection().name());
    service.reset();
    while (session.interface()->isServiceRegistered(uniqueName)) {
        std::this_thread::yield();
    }
}

TEST_F(DesktopPowerAssertionsTest, ASlowServiceDoesNotBlockAndItsLateGrantCounts) {
    bound = 20ms;
    const auto gnome = service(gnomeSessionManager);
    gnome->hold(true);
    const auto start = std::chrono::steady_clock::now();

    const auto id = create();
    ASSERT_TRUE(id.has_value());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 1; }));
    gnome->hold(false);
    gnome->answerHeld();
    gnome->settle(session);
    assertions().release(*id);

    ASSERT_TRUE(waitUntil([&] { return !gnome->calls().empty() && locking(*gnome).back() == "Uninhibit(1u)"; }));
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, ALateRefusalRevokes) {
    bound = 20ms;
    const auto gnome = service(gnomeSessionManager);
    gnome->refuse(QStringLiteral("Inhibit"));
    gnome->hold(true);

    const auto id = create();
    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 1; }));
    gnome->answerHeld();

    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, TheRevocationHandlerMayAskAgain) {
    bound = 20ms;
    const auto gnome = service(gnomeSessionManager);
    gnome->refuse(QStringLiteral("Inhibit"));
    gnome->hold(true);
    std::optional<PowerAssertionID> second;
    const auto first = create();
    assertions().setRevocationHandler([&](PowerAssertionID id) {
        revoked.push_back(id);
        grant(*gnome, gnomeSessionManager);
        gnome->hold(false);
        second = create();
    });

    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 1; }));
    gnome->answerHeld();

    ASSERT_TRUE(waitUntil([&] { return second.has_value(); }));
    EXPECT_THAT(revoked, ElementsAre(*first));
}

TEST_F(DesktopPowerAssertionsTest, ALateGrantDoesNotAffectANewerRequest) {
    bound = 20ms;
    const auto gnome = service(gnomeSessionManager);
    gnome->hold(true);

    const auto first = create();
    assertions().release(*first);
    const auto second = create(systemOnly);
    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 2; }));
    gnome->hold(false);
    gnome->answerHeld();

    // The first request's cookie is released automatically, the second one's only with its assertion.
    ASSERT_TRUE(waitForLocking(*gnome, 3));
    EXPECT_EQ(locking(*gnome).back(), "Uninhibit(1u)");
    EXPECT_EQ(locking(*gnome).size(), 3U);
    assertions().release(*second);
    ASSERT_TRUE(waitForLocking(*gnome, 4));
    EXPECT_EQ(locking(*gnome).back(), "Uninhibit(2u)");
}

TEST_F(DesktopPowerAssertionsTest, AReturningServiceIsAskedAgain) {
    const auto gnome = service(gnomeSessionManager);
    const auto id = create();

    gnome->vanish();
    ASSERT_TRUE(waitForLocking(*gnome, 2));
    gnome->settle(session);
    // Its connection lives on, so the old lock is released there; no other service is left to ask.
    EXPECT_THAT(locking(*gnome), ElementsAre(StartsWith("Inhibit"), "Uninhibit(1u)"));
    gnome->appear();

    ASSERT_TRUE(waitForLocking(*gnome, 3));
    EXPECT_EQ(locking(*gnome).back(), locking(*gnome).front());
    EXPECT_THAT(revoked, IsEmpty());
    assertions().release(*id);
}

TEST_F(DesktopPowerAssertionsTest, ABetterServiceTakesOverWhenItAppears) {
    const auto gnome = service(gnomeSessionManager);
    gnome->vanish();
    const auto saver = service(screenSaver);
    ASSERT_TRUE(create().has_value());
    ASSERT_EQ(locking(*saver).size(), 1U);

    gnome->appear();

    ASSERT_TRUE(waitForLocking(*gnome, 1));
    ASSERT_TRUE(waitForLocking(*saver, 2));
    EXPECT_EQ(locking(*saver).back(), "UnInhibit(1u)");
}

TEST_F(DesktopPowerAssertionsTest, AnAppearingWorseServiceChangesNothing) {
    const auto gnome = service(gnomeSessionManager);
    ASSERT_TRUE(create().has_value());

    const auto saver = service(screenSaver);
    saver->vanish();
    gnome->settle(session);

    EXPECT_EQ(locking(*gnome).size(), 1U);
    EXPECT_THAT(saver->calls(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, OnlyTheNewOwnerIsAskedWhenANameChangesHands) {
    auto old = service(gnomeSessionManager);
    const auto id = create();
    old->vanish();
    const auto successor = service(gnomeSessionManager);

    ASSERT_TRUE(waitForLocking(*successor, 1));
    ASSERT_TRUE(waitUntil([&] { return lastCookie == 2; }));
    successor->settle(session);
    assertions().release(*id);

    ASSERT_TRUE(waitForLocking(*successor, 2));
    EXPECT_EQ(locking(*successor).back(), "Uninhibit(2u)") << "the cookie of the process that granted it";
}

TEST_F(DesktopPowerAssertionsTest, ALateGrantIsReleasedAtTheProcessThatGrantedIt) {
    const auto old = service(gnomeSessionManager);
    ASSERT_TRUE(create().has_value());
    old->hold(true);
    old->vanish();
    old->appear();
    ASSERT_TRUE(waitForLocking(*old, 3));
    old->vanish();
    const auto successor = service(gnomeSessionManager);
    ASSERT_TRUE(waitUntil([&] { return lastCookie == 2; }));

    old->hold(false);
    old->answerHeld();

    ASSERT_TRUE(waitForLocking(*old, 4));
    EXPECT_EQ(locking(*old).back(), "Uninhibit(3u)");
    successor->settle(session);
    EXPECT_EQ(locking(*successor).size(), 1U);
}

TEST_F(DesktopPowerAssertionsTest, AServiceThatRestartedUnnoticedIsAskedAgain) {
    bound = 20ms;
    auto old = service(gnomeSessionManager);
    assertions().release(create().value());
    crash(std::move(old), session);
    const auto successor = service(gnomeSessionManager);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitForLocking(*successor, 1));
    successor->settle(session);
    EXPECT_THAT(revoked, IsEmpty());
    assertions().release(*id);
    ASSERT_TRUE(waitForLocking(*successor, 2));
    EXPECT_EQ(locking(*successor).back(), "Uninhibit(2u)");
}

TEST_F(DesktopPowerAssertionsTest, AServiceThatLeftUnnoticedRevokesTheAssertion) {
    bound = 20ms;
    auto gnome = service(gnomeSessionManager);
    assertions().release(create().value());
    crash(std::move(gnome), session);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, AHangingServiceIsSkippedAndItsLateGrantReleased) {
    bound = 20ms;
    options.timing.patience = 2s;
    const auto gnome = service(gnomeSessionManager);
    const auto kde = service(kdePolicyAgent);
    gnome->hold(true);

    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitForLocking(*kde, 1));
    gnome->hold(false);
    gnome->answerHeld();

    ASSERT_TRUE(waitForLocking(*gnome, 2));
    EXPECT_EQ(locking(*gnome).back(), "Uninhibit(2u)");
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, RevokesWhenTheLastServiceHangs) {
    bound = 20ms;
    options.timing.patience = 30ms;
    const auto gnome = service(gnomeSessionManager);
    gnome->hold(true);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, CountAsGrantedUntilTheBusReplies) {
    bound = 0ms;
    const auto gnome = service(gnomeSessionManager);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitForLocking(*gnome, 1));
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, AreRevokedIfPresumedGrantedWithoutAnyService) {
    bound = 0ms;

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, KDEIsAskedOnceItEnforcesTheLock) {
    options.timing.enforcement = 5ms;
    const auto kde = service(kdePolicyAgent);
    const auto logind = service(logindIdle);
    kde->answer(QStringLiteral("HasInhibition"), [](const auto& call) { return call.createReply(false); });
    ASSERT_TRUE(create().has_value());

    // The user has blocked it in the applet.
    ASSERT_TRUE(waitForLocking(*kde, 2));

    EXPECT_EQ(locking(*kde).back(), "ReleaseInhibition(1u)");
    EXPECT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"logind"}; }));
    EXPECT_EQ(kde->calls().at(1), "HasInhibition(4u)");
}

}  // namespace
}  // namespace kestro
