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
    timing.answerBound = 20ms;
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->hold(true);
    const auto start = std::chrono::steady_clock::now();

    const auto id = create();
    ASSERT_TRUE(id.has_value());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 1; }));
    gnome->hold(false);
    gnome->answerHeld();
    gnome->settle(session);
    assertions().release(*id);

    ASSERT_TRUE(waitUntil([&] { return !gnome->calls().empty() && gnome->calls().back() == "Uninhibit(1u)"; }));
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, ALateRefusalRevokes) {
    timing.answerBound = 20ms;
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
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
    timing.answerBound = 20ms;
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->refuse(QStringLiteral("Inhibit"));
    gnome->hold(true);
    std::optional<PowerAssertionID> second;
    const auto first = create();
    assertions().setRevocationHandler([&](PowerAssertionID id) {
        revoked.push_back(id);
        grant(*gnome, InhibitionBackend::gnomeSessionManager);
        gnome->hold(false);
        second = create();
    });

    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 1; }));
    gnome->answerHeld();

    ASSERT_TRUE(waitUntil([&] { return second.has_value(); }));
    EXPECT_THAT(revoked, ElementsAre(*first));
}

TEST_F(DesktopPowerAssertionsTest, ALateGrantDoesNotAffectANewerRequest) {
    timing.answerBound = 20ms;
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->hold(true);

    const auto first = create();
    assertions().release(*first);
    const auto second = create(systemOnly);
    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 2; }));
    gnome->hold(false);
    gnome->answerHeld();

    // The first request's cookie is released automatically, the second one's only with its assertion.
    ASSERT_TRUE(waitForCalls(*gnome, 3));
    EXPECT_EQ(gnome->calls().back(), "Uninhibit(1u)");
    EXPECT_EQ(gnome->calls().size(), 3U);
    assertions().release(*second);
    ASSERT_TRUE(waitForCalls(*gnome, 4));
    EXPECT_EQ(gnome->calls().back(), "Uninhibit(2u)");
}

TEST_F(DesktopPowerAssertionsTest, AReturningServiceIsAskedAgain) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    const auto id = create();

    gnome->vanish();
    ASSERT_TRUE(waitForCalls(*gnome, 2));
    gnome->settle(session);
    // Its connection lives on, so the old lock is released there; no other service is left to ask.
    EXPECT_THAT(gnome->calls(), ElementsAre(StartsWith("Inhibit"), "Uninhibit(1u)"));
    gnome->appear();

    ASSERT_TRUE(waitForCalls(*gnome, 3));
    EXPECT_EQ(gnome->calls().back(), gnome->calls().front());
    EXPECT_THAT(revoked, IsEmpty());
    assertions().release(*id);
}

TEST_F(DesktopPowerAssertionsTest, ABetterServiceTakesOverWhenItAppears) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->vanish();
    const auto saver = service(InhibitionBackend::screenSaver);
    ASSERT_TRUE(create().has_value());
    ASSERT_EQ(saver->calls().size(), 1U);

    gnome->appear();

    ASSERT_TRUE(waitForCalls(*gnome, 1));
    ASSERT_TRUE(waitForCalls(*saver, 2));
    EXPECT_EQ(saver->calls().back(), "UnInhibit(1u)");
}

TEST_F(DesktopPowerAssertionsTest, AnAppearingWorseServiceChangesNothing) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    ASSERT_TRUE(create().has_value());

    const auto portal = service(InhibitionBackend::portal);
    portal->vanish();
    gnome->settle(session);

    EXPECT_EQ(gnome->calls().size(), 1U);
    EXPECT_THAT(portal->calls(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, OnlyTheNewOwnerIsAskedWhenANameChangesHands) {
    auto old = service(InhibitionBackend::gnomeSessionManager);
    const auto id = create();
    old->vanish();
    const auto successor = service(InhibitionBackend::gnomeSessionManager);

    ASSERT_TRUE(waitForCalls(*successor, 1));
    ASSERT_TRUE(waitUntil([&] { return lastCookie == 2; }));
    successor->settle(session);
    assertions().release(*id);

    ASSERT_TRUE(waitForCalls(*successor, 2));
    EXPECT_EQ(successor->calls().back(), "Uninhibit(2u)") << "the cookie of the process that granted it";
}

TEST_F(DesktopPowerAssertionsTest, ALateGrantIsReleasedAtTheProcessThatGrantedIt) {
    const auto old = service(InhibitionBackend::gnomeSessionManager);
    ASSERT_TRUE(create().has_value());
    old->hold(true);
    old->vanish();
    old->appear();
    ASSERT_TRUE(waitForCalls(*old, 3));
    old->vanish();
    const auto successor = service(InhibitionBackend::gnomeSessionManager);
    ASSERT_TRUE(waitUntil([&] { return lastCookie == 2; }));

    old->hold(false);
    old->answerHeld();

    ASSERT_TRUE(waitForCalls(*old, 4));
    EXPECT_EQ(old->calls().back(), "Uninhibit(3u)");
    successor->settle(session);
    EXPECT_EQ(successor->calls().size(), 1U);
}

TEST_F(DesktopPowerAssertionsTest, AServiceThatRestartedUnnoticedIsAskedAgain) {
    timing.answerBound = 20ms;
    auto old = service(InhibitionBackend::gnomeSessionManager);
    assertions().release(create().value());
    crash(std::move(old), session);
    const auto successor = service(InhibitionBackend::gnomeSessionManager);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitForCalls(*successor, 1));
    successor->settle(session);
    EXPECT_THAT(revoked, IsEmpty());
    assertions().release(*id);
    ASSERT_TRUE(waitForCalls(*successor, 2));
    EXPECT_EQ(successor->calls().back(), "Uninhibit(2u)");
}

TEST_F(DesktopPowerAssertionsTest, AServiceThatLeftUnnoticedRevokesTheAssertion) {
    timing.answerBound = 20ms;
    auto gnome = service(InhibitionBackend::gnomeSessionManager);
    assertions().release(create().value());
    crash(std::move(gnome), session);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, AHangingServiceIsSkippedAndItsLateGrantReleased) {
    timing = {20ms, 500ms};
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    const auto kde = service(InhibitionBackend::kdePolicyAgent);
    gnome->hold(true);

    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitForCalls(*kde, 1));
    gnome->hold(false);
    gnome->answerHeld();

    ASSERT_TRUE(waitForCalls(*gnome, 2));
    EXPECT_EQ(gnome->calls().back(), "Uninhibit(2u)");
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, RevokesWhenTheLastServiceHangs) {
    timing = {20ms, 30ms};
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->hold(true);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, CountAsGrantedUntilTheBusReplies) {
    timing.answerBound = 0ms;
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitForCalls(*gnome, 1));
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, AreRevokedIfPresumedGrantedWithoutAnyService) {
    timing.answerBound = 0ms;

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

}  // namespace
}  // namespace kestro
