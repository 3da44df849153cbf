#include "tests/platform/desktop/desktop_power_assertions_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(DesktopPowerAssertionsTest, ThePortalIsNotAskedOutsideASandbox) {
    const auto portal = service(portalIdle);
    const auto logind = service(logindIdle);

    ASSERT_TRUE(create().has_value());

    EXPECT_THAT(portal->calls(), IsEmpty());
    EXPECT_THAT(holders(), ElementsAre("logind"));
}

class InASandbox : public DesktopPowerAssertionsTest {
protected:
    InASandbox() {
        options.session.isSandboxed = true;
        bound = 20ms;
    }

    void respond(const QDBusConnection& from, unsigned request, uint response) {
        auto signal = QDBusMessage::createTargetedSignal(session.baseService(), requestPath(request),
                                                         QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        signal << response << QVariantMap();
        ASSERT_TRUE(from.send(signal));
    }
};

TEST_F(InASandbox, OnlyThePortalIsAsked) {
    const auto portal = service(portalIdle);
    const auto manager = service(gnomeSessionManager);

    const auto id = create();

    ASSERT_TRUE(waitForLocking(*portal, 2));
    EXPECT_THAT(manager->calls(), IsEmpty());
    portal->settle(session);
    assertions().release(*id);
    EXPECT_TRUE(waitForLocking(*portal, 4));
    EXPECT_THAT(portal->calls(),
                ElementsAre("Inhibit(\"\", 4u, {reason: \"Kestro Keep-Awake Active\"})",
                            "Inhibit(\"\", 8u, {reason: \"Kestro Keep-Awake Active\"})", "Close()", "Close()"));
}

TEST_F(InASandbox, ThePortalHoldsOnceItsBackendHasConfirmed) {
    const auto portal = service(portalIdle);
    ASSERT_TRUE(create().has_value());
    ASSERT_TRUE(waitForLocking(*portal, 2));
    portal->settle(session);
    EXPECT_EQ(assertions().report().state, ReportState::pending);

    respond(portal->connection(), 1, 2);  // as of the GTK backend, which supports no suspend
    respond(portal->connection(), 2, 0);

    EXPECT_TRUE(isReported(ReportState::held));
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(InASandbox, OnlyThePortalCanEndARequest) {
    const auto portal = service(portalSuspend);
    const auto id = create(systemOnly);
    const auto stranger = sessionBus.connect();
    ASSERT_TRUE(waitForLocking(*portal, 1));
    portal->settle(session);

    respond(stranger, 1, 2);
    stranger.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                                 QStringLiteral("org.freedesktop.DBus.Peer"),
                                                 QStringLiteral("Ping")));
    portal->settle(session);
    EXPECT_THAT(revoked, IsEmpty());
    respond(portal->connection(), 1, 2);

    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
    EXPECT_EQ(assertions().report().state, ReportState::refused);
}

}  // namespace
}  // namespace kestro
