#include "platform/desktop/desktop_power_assertions.h"

#include "tests/platform/desktop/event_waiting.h"
#include "tests/platform/desktop/fake_service.h"
#include "tests/platform/desktop/lock_pipe.h"
#include "tests/platform/desktop/private_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>

namespace kestro {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing_support::FakeService;
using testing_support::LockPipe;
using testing_support::PrivateBus;
using testing_support::waitUntil;

constexpr auto display = "PreventUserIdleDisplaySleep";
constexpr auto systemOnly = "PreventUserIdleSystemSleep";
constexpr auto title = "Kestro Keep-Awake Active";
constexpr auto requestPath = "/org/freedesktop/portal/desktop/request/1_7/kestro1";

class DesktopPowerAssertionsTest : public testing::Test {
protected:
    /// A service that grants every wish; cookies count from 1.
    std::unique_ptr<FakeService> service(InhibitionBackend backend) {
        auto& bus = isOnSystemBus(backend) ? systemBus : sessionBus;
        auto made = std::make_unique<FakeService>(bus.connect(), serviceName(backend));
        grant(*made, backend);
        return made;
    }

    void grant(FakeService& fake, InhibitionBackend backend) {
        const auto answer = [this, backend](const QDBusMessage& call) {
            if (backend == InhibitionBackend::portal) {
                return call.createReply(QVariant::fromValue(QDBusObjectPath(QLatin1String(requestPath))));
            }
            if (backend == InhibitionBackend::logind) {
                return call.createReply(QVariant::fromValue(pipe.writeEnd()));
            }
            return call.createReply(static_cast<uint>(++lastCookie));
        };
        fake.answer(QStringLiteral("Inhibit"), answer);
        fake.answer(QStringLiteral("AddInhibition"), answer);
    }

    DesktopPowerAssertions& assertions() {
        if (!assertions_) {
            assertions_ = std::make_unique<DesktopPowerAssertions>(session, system, timing);
            assertions_->setRevocationHandler([this](PowerAssertionID id) { revoked.push_back(id); });
        }
        return *assertions_;
    }

    std::optional<PowerAssertionID> create(const char* type = display) {
        return assertions().create(type, 255, title);
    }

    static bool waitForCalls(const FakeService& fake, std::size_t count) {
        return waitUntil([&] { return fake.calls().size() >= count; });
    }

    PrivateBus sessionBus;
    PrivateBus systemBus;
    QDBusConnection session = sessionBus.connect();
    QDBusConnection system = systemBus.connect();
    DesktopPowerAssertions::Timing timing{10s, 20s};
    LockPipe pipe;
    std::atomic<unsigned> lastCookie = 0;
    std::vector<PowerAssertionID> revoked;

private:
    std::unique_ptr<DesktopPowerAssertions> assertions_;

protected:
    void destroyAssertions() { assertions_.reset(); }
};

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

TEST_P(EachBackend, IsAskedInItsOwnWordsAndReleased) {
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

TEST_F(DesktopPowerAssertionsTest, TheLockOfLogindIsHeldUntilTheRelease) {
    const auto logind = service(InhibitionBackend::logind);
    const auto id = create();
    logind->answer(QStringLiteral("Inhibit"), {});
    pipe.closeWriteEnd();

    EXPECT_TRUE(pipe.isHeldBySomebody());
    assertions().release(*id);

    EXPECT_TRUE(waitUntil([&] { return !pipe.isHeldBySomebody(); }));
}

TEST_F(DesktopPowerAssertionsTest, AnOlderLogindIsAskedForTheModeThatItKnows) {
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

TEST_F(DesktopPowerAssertionsTest, TheBestServiceOnTheBusIsAskedAlone) {
    std::vector<std::unique_ptr<FakeService>> services;
    for (std::size_t index = 0; index < inhibitionBackendCount; ++index) {
        services.push_back(service(static_cast<InhibitionBackend>(index)));
    }

    // One after the other leaves: the next best takes over.
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

TEST_F(DesktopPowerAssertionsTest, WhereDisplayAndSystemGoTogetherTheSystemAloneIsLogindsMatter) {
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

TEST_F(DesktopPowerAssertionsTest, WithoutAnyServiceTheyAreRefused) {
    EXPECT_EQ(create(), std::nullopt);
    EXPECT_EQ(create(systemOnly), std::nullopt);
}

TEST(DesktopPowerAssertions, WithoutABusTheyAreRefused) {
    DesktopPowerAssertions assertions(PrivateBus::none(), PrivateBus::none());

    EXPECT_EQ(assertions.create(display, 255, title), std::nullopt);
}

TEST_F(DesktopPowerAssertionsTest, AfterTheEndOfTheBusTheyAreRefused) {
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

TEST_F(DesktopPowerAssertionsTest, ARefusalIsToldAtOnce) {
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

TEST_F(DesktopPowerAssertionsTest, RepliesOfTheWrongTypeAreRefusals) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    const auto portal = service(InhibitionBackend::portal);
    const auto logind = service(InhibitionBackend::logind);
    gnome->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(QString()); });
    portal->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(7U); });
    logind->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(); });

    EXPECT_EQ(create(), std::nullopt);

    EXPECT_EQ(logind->calls().size(), 1U);
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

TEST_F(DesktopPowerAssertionsTest, ALateGrantNeverTouchesANewerWish) {
    timing.answerBound = 20ms;
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->hold(true);

    const auto first = create();
    assertions().release(*first);
    const auto second = create(systemOnly);
    ASSERT_TRUE(waitUntil([&] { return gnome->heldCalls() == 2; }));
    gnome->hold(false);
    gnome->answerHeld();

    // The first wish's cookie comes back by itself, the second one's with its release only.
    ASSERT_TRUE(waitForCalls(*gnome, 3));
    EXPECT_EQ(gnome->calls().back(), "Uninhibit(1u)");
    EXPECT_EQ(gnome->calls().size(), 3U);
    assertions().release(*second);
    ASSERT_TRUE(waitForCalls(*gnome, 4));
    EXPECT_EQ(gnome->calls().back(), "Uninhibit(2u)");
}

TEST_F(DesktopPowerAssertionsTest, AServiceThatReturnsIsAskedAgain) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    const auto id = create();

    gnome->vanish();
    ASSERT_TRUE(waitForCalls(*gnome, 2));
    gnome->settle(session);
    // Its connection lives on, so that the old lock goes back there; there is nobody to ask.
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

TEST_F(DesktopPowerAssertionsTest, AWorseServiceThatAppearsChangesNothing) {
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    ASSERT_TRUE(create().has_value());

    const auto portal = service(InhibitionBackend::portal);
    portal->vanish();
    gnome->settle(session);

    EXPECT_EQ(gnome->calls().size(), 1U);
    EXPECT_THAT(portal->calls(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, AnotherProcessThatTakesTheNameOverIsAskedAndTheOldOneIsNot) {
    auto old = service(InhibitionBackend::gnomeSessionManager);
    const auto id = create();
    old->vanish();
    const auto successor = service(InhibitionBackend::gnomeSessionManager);

    ASSERT_TRUE(waitForCalls(*successor, 1));
    ASSERT_TRUE(waitUntil([&] { return lastCookie == 2; }));
    successor->settle(session);
    assertions().release(*id);

    ASSERT_TRUE(waitForCalls(*successor, 2));
    EXPECT_EQ(successor->calls().back(), "Uninhibit(2u)") << "the cookie of the one that gave it";
}

TEST_F(DesktopPowerAssertionsTest, AServiceThatHangsIsPassedOverAndItsLateGrantGivenBack) {
    timing = {20ms, 30ms};
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

TEST_F(DesktopPowerAssertionsTest, TheLastServiceThatHangsRevokesInTheEnd) {
    timing = {20ms, 30ms};
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);
    gnome->hold(true);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, BeforeTheBusHasAnsweredTheyAreTakenAsGranted) {
    timing.answerBound = 0ms;
    const auto gnome = service(InhibitionBackend::gnomeSessionManager);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitForCalls(*gnome, 1));
    EXPECT_THAT(revoked, IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, TakenAsGrantedWithoutAnyServiceTheyAreRevoked) {
    timing.answerBound = 0ms;

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    ASSERT_TRUE(waitUntil([&] { return !revoked.empty(); }));
    EXPECT_THAT(revoked, ElementsAre(*id));
}

TEST_F(DesktopPowerAssertionsTest, ThePortalMayEndARequestAndNobodyElse) {
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

TEST_F(DesktopPowerAssertionsTest, EachOfSeveralIsReleasedByItself) {
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
