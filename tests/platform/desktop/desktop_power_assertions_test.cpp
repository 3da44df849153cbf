#include "tests/platform/desktop/desktop_power_assertions_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

struct BackendCase {
    InhibitionBackend backend;
    const char* type;
    const char* inhibit;
    const char* release;  // nullptr: nothing is called
};

void PrintTo(const BackendCase& row, std::ostream* out) {
    *out << row.inhibit;
}

class EachBackend : public DesktopPowerAssertionsTest, public testing::WithParamInterface<BackendCase> {};

TEST_P(EachBackend, ReceivesItsOwnInhibitAndReleaseCalls) {
    const auto [backend, type, inhibit, release] = GetParam();
    const auto fake = service(backend);

    const auto id = create(type);
    ASSERT_TRUE(id.has_value());
    EXPECT_THAT(fake->calls(), ElementsAre(inhibit));
    assertions().release(*id);

    if (release != nullptr) {
        ASSERT_TRUE(waitForCalls(*fake, 2));
        EXPECT_THAT(fake->calls(), ElementsAre(inhibit, release));
    } else {
        pipe.closeWriteEnd();
        EXPECT_TRUE(waitUntil([&] { return !pipe.isHeldBySomebody(); }));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Calls, EachBackend,
    testing::Values(
        BackendCase{InhibitionBackend::gnomeSessionManager, display,
                    "Inhibit(\"Kestro\", 0u, \"Kestro Keep-Awake Active\", 8u)", "Uninhibit(1u)"},
        BackendCase{InhibitionBackend::gnomeSessionManager, systemOnly,
                    "Inhibit(\"Kestro\", 0u, \"Kestro Keep-Awake Active\", 4u)", "Uninhibit(1u)"},
        BackendCase{InhibitionBackend::kdePolicyAgent, display,
                    "AddInhibition(4u, \"Kestro\", \"Kestro Keep-Awake Active\")", "ReleaseInhibition(1u)"},
        BackendCase{InhibitionBackend::kdePolicyAgent, systemOnly,
                    "AddInhibition(1u, \"Kestro\", \"Kestro Keep-Awake Active\")", "ReleaseInhibition(1u)"},
        BackendCase{InhibitionBackend::freedesktopPowerManagement, display,
                    "Inhibit(\"Kestro\", \"Kestro Keep-Awake Active\")", "UnInhibit(1u)"},
        BackendCase{InhibitionBackend::portal, display,
                    "Inhibit(\"\", 8u, {reason: \"Kestro Keep-Awake Active\"})", "Close()"},
        BackendCase{InhibitionBackend::portal, systemOnly,
                    "Inhibit(\"\", 4u, {reason: \"Kestro Keep-Awake Active\"})", "Close()"},
        BackendCase{InhibitionBackend::screenSaver, display, "Inhibit(\"Kestro\", \"Kestro Keep-Awake Active\")",
                    "UnInhibit(1u)"},
        BackendCase{InhibitionBackend::logind, display,
                    "Inhibit(\"idle\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block\")", nullptr},
        BackendCase{InhibitionBackend::logind, systemOnly,
                    "Inhibit(\"sleep\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block-weak\")", nullptr}));

TEST_F(DesktopPowerAssertionsTest, LogindsLockIsHeldUntilReleased) {
    const auto logind = service(InhibitionBackend::logind);
    const auto id = create();
    logind->answer(QStringLiteral("Inhibit"), {});
    pipe.closeWriteEnd();

    EXPECT_TRUE(pipe.isHeldBySomebody());
    assertions().release(*id);

    EXPECT_TRUE(waitUntil([&] { return !pipe.isHeldBySomebody(); }));
}

TEST_F(DesktopPowerAssertionsTest, AnOlderLogindIsAskedForAModeItKnows) {
    const auto logind = service(InhibitionBackend::logind);
    logind->answer(QStringLiteral("Inhibit"), [this](const QDBusMessage& call) {
        return call.arguments().at(3) == QStringLiteral("block")
                   ? call.createReply(QVariant::fromValue(pipe.writeEnd()))
                   : call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("The mode is not known here"));
    });

    EXPECT_TRUE(create(systemOnly).has_value());

    EXPECT_THAT(logind->calls(),
                ElementsAre("Inhibit(\"sleep\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block-weak\")",
                            "Inhibit(\"sleep\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block\")"));
}

TEST_F(DesktopPowerAssertionsTest, OnlyTheBestServiceOnTheBusIsAsked) {
    std::vector<std::unique_ptr<FakeService>> services;
    for (std::size_t index = 0; index < inhibitionBackendCount; ++index) {
        services.push_back(service(static_cast<InhibitionBackend>(index)));
    }

    // They leave one after the other: the next best takes over.
    ASSERT_TRUE(create().has_value());
    for (std::size_t index = 0; index < inhibitionBackendCount; ++index) {
        ASSERT_TRUE(waitForCalls(*services[index], 1)) << index;
        for (std::size_t later = index + 1; later < inhibitionBackendCount; ++later) {
            EXPECT_THAT(services[later]->calls(), IsEmpty());
        }
        services[index]->vanish();
    }

    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, LogindInhibitsTheSystemAloneWhereTheDesktopServiceCannot) {
    const auto manager = service(InhibitionBackend::freedesktopPowerManagement);
    const auto portal = service(InhibitionBackend::portal);
    const auto logind = service(InhibitionBackend::logind);

    EXPECT_TRUE(create(systemOnly).has_value());

    EXPECT_THAT(manager->calls(), IsEmpty());
    EXPECT_THAT(portal->calls(), IsEmpty());
    EXPECT_EQ(logind->calls().size(), 1U);
}

TEST_F(DesktopPowerAssertionsTest, AScreenSaverCannotKeepTheSystemAwake) {
    const auto saver = service(InhibitionBackend::screenSaver);

    EXPECT_EQ(create(systemOnly), std::nullopt);

    EXPECT_THAT(saver->calls(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, AreRefusedWithoutAnyService) {
    EXPECT_EQ(create(), std::nullopt);
    EXPECT_EQ(create(systemOnly), std::nullopt);
}

TEST(DesktopPowerAssertions, AreRefusedWithoutABus) {
    DesktopPowerAssertions assertions(PrivateBus::none(), PrivateBus::none());

    EXPECT_EQ(assertions.create(display, 255, title), std::nullopt);
}

TEST_F(DesktopPowerAssertionsTest, AreRefusedAfterTheBusHasGone) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    ASSERT_TRUE(create().has_value());
    sessionBus.kill();
    ASSERT_TRUE(waitUntil([&] { return !session.isConnected(); }));

    EXPECT_EQ(create(), std::nullopt);
}

TEST_F(DesktopPowerAssertionsTest, UnknownTypesAndLevelsAreRefused) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);

    EXPECT_EQ(assertions().create("PreventNothing", 255, title), std::nullopt);
    EXPECT_EQ(assertions().create(display, 0, title), std::nullopt);

    EXPECT_THAT(gnome->calls(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, ARefusalIsReportedAtOnce) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->refuse(QStringLiteral("Inhibit"));

    EXPECT_EQ(create(), std::nullopt);

    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, TheNextServiceIsAskedWhenOneRefuses) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    const auto logind = service(InhibitionBackend::logind);
    gnome->refuse(QStringLiteral("Inhibit"));

    EXPECT_TRUE(create().has_value());

    EXPECT_EQ(logind->calls().size(), 1U);
}

TEST_F(DesktopPowerAssertionsTest, RepliesOfTheWrongTypeCountAsRefusals) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    const auto portal = service(InhibitionBackend::portal);
    const auto logind = service(InhibitionBackend::logind);
    gnome->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(QString()); });
    portal->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(7U); });
    logind->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(); });

    EXPECT_EQ(create(), std::nullopt);

    EXPECT_EQ(logind->calls().size(), 1U);
}

TEST_F(DesktopPowerAssertionsTest, OnlyThePortalCanEndARequest) {
    const auto portal = service(InhibitionBackend::portal);
    const auto id = create();
    const auto respond = [&](const QDBusConnection& from, uint response) {
        auto signal = QDBusMessage::createTargetedSignal(session.baseService(), QLatin1String(requestPath),
                                                         QStringLiteral("org.freedesktop.portal.Request"),
                                                         QStringLiteral("Response"));
        signal << response << QVariantMap();
        ASSERT_TRUE(from.send(signal));
    };
    const auto stranger = sessionBus.connect();

    respond(stranger, 2);
    respond(portal->connection(), 0);
    stranger.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                                 QStringLiteral("org.freedesktop.DBus.Peer"),
                                                 QStringLiteral("Ping")));
    portal->settle(session);
    EXPECT_THAT(revoked, IsEmpty());
    respond(portal->connection(), 2);

    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, EachOneIsReleasedSeparately) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    const auto first = create();
    const auto second = create(systemOnly);
    ASSERT_NE(first, second);

    assertions().release(*first);
    assertions().release(*first);
    assertions().release(4711);

    ASSERT_TRUE(waitForCalls(*gnome, 3));
    gnome->settle(session);
    EXPECT_EQ(gnome->calls()[2], "Uninhibit(1u)");
    assertions().release(*second);
    ASSERT_TRUE(waitUntil([&] { return gnome->calls().back() == "Uninhibit(2u)"; }));
}

TEST_F(DesktopPowerAssertionsTest, DestructionReleasesEverything) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    ASSERT_TRUE(create().has_value());

    destroyAssertions();

    ASSERT_TRUE(waitForCalls(*gnome, 2));
    EXPECT_EQ(gnome->calls().back(), "Uninhibit(1u)");
}

}  // namespace
}  // namespace kestro
