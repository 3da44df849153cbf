#include "tests/platform/desktop/desktop_power_assertions_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

struct MechanismCase {
    LockMechanism mechanism;
    const char* type;
    const char* acquire;
    const char* question;  // nullptr: it cannot be asked
    const char* release;   // nullptr: nothing is called
};

void PrintTo(const MechanismCase& row, std::ostream* out) {
    *out << row.acquire;
}

class EachMechanism : public DesktopPowerAssertionsTest, public testing::WithParamInterface<MechanismCase> {};

TEST_P(EachMechanism, ReceivesItsOwnCalls) {
    const auto [mechanism, type, acquire, question, release] = GetParam();
    const auto fake = service(mechanism);

    const auto id = create(type);
    ASSERT_TRUE(id.has_value());
    std::vector<std::string> expected{acquire};
    if (question != nullptr) {
        expected.emplace_back(question);
    }
    EXPECT_THAT(fake->calls(), testing::ElementsAreArray(expected));
    assertions().release(*id);

    expected.emplace_back(release);
    EXPECT_TRUE(waitUntil([&] { return fake->calls() == expected; })) << testing::PrintToString(fake->calls());
}

INSTANTIATE_TEST_SUITE_P(
    Calls, EachMechanism,
    testing::Values(
        // Both flags: GNOME ignores the idle flag alone while the screen is locked.
        MechanismCase{gnomeSessionManager, display, "Inhibit(\"Kestro\", 0u, \"Kestro Keep-Awake Active\", 12u)",
                      "IsInhibited(12u)", "Uninhibit(1u)"},
        MechanismCase{gnomeSessionManager, systemOnly, "Inhibit(\"Kestro\", 0u, \"Kestro Keep-Awake Active\", 4u)",
                      "IsInhibited(4u)", "Uninhibit(1u)"},
        MechanismCase{kdePolicyAgent, display, "AddInhibition(4u, \"Kestro\", \"Kestro Keep-Awake Active\")",
                      nullptr, "ReleaseInhibition(1u)"},
        MechanismCase{kdePolicyAgent, systemOnly, "AddInhibition(1u, \"Kestro\", \"Kestro Keep-Awake Active\")",
                      nullptr, "ReleaseInhibition(1u)"},
        MechanismCase{freedesktopPowerManagement, display, "Inhibit(\"Kestro\", \"Kestro Keep-Awake Active\")",
                      "HasInhibit()", "UnInhibit(1u)"},
        MechanismCase{freedesktopPowerManagement, systemOnly, "Inhibit(\"Kestro\", \"Kestro Keep-Awake Active\")",
                      "HasInhibit()", "UnInhibit(1u)"},
        MechanismCase{screenSaver, display, "Inhibit(\"Kestro\", \"Kestro Keep-Awake Active\")", nullptr,
                      "UnInhibit(1u)"}));

TEST_F(DesktopPowerAssertionsTest, LogindHoldsIdleAndSleepForAnUnmanagedDesktop) {
    const auto logind = service(logindIdle);

    const auto id = create();

    ASSERT_TRUE(id.has_value());
    EXPECT_TRUE(waitForLocking(*logind, 2));
    EXPECT_THAT(locking(*logind),
                ElementsAre("Inhibit(\"idle\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block\")",
                            "Inhibit(\"sleep\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block\")"));
}

TEST_F(DesktopPowerAssertionsTest, LogindBlocksSleepStronglyForTheSystemAlone) {
    const auto logind = service(logindSleep);

    ASSERT_TRUE(create(systemOnly).has_value());

    EXPECT_THAT(locking(*logind),
                ElementsAre("Inhibit(\"sleep\", \"Kestro\", \"Kestro Keep-Awake Active\", \"block\")"));
}

TEST_F(DesktopPowerAssertionsTest, LogindsLocksAreHeldUntilReleased) {
    const auto logind = service(logindIdle);
    const auto id = create();
    ASSERT_TRUE(waitForLocking(*logind, 2));
    ASSERT_TRUE(waitUntil([&] { return holders() == std::vector<std::string>{"logind"}; }));
    logind->settle(system);
    logind->answer(QStringLiteral("Inhibit"), {});
    pipe.closeWriteEnd();

    EXPECT_TRUE(pipe.isHeldBySomebody());
    assertions().release(*id);

    EXPECT_TRUE(waitUntil([&] { return !pipe.isHeldBySomebody(); }));
}

TEST_F(DesktopPowerAssertionsTest, OneSetHoldsEveryMechanismThatCounts) {
    int suspended = 0;
    options.suspendScreenSaver = [&](bool suspend) {
        suspended += suspend ? 1 : -1;
        return true;
    };
    const auto power = service(freedesktopPowerManagement);
    const auto saver = service(screenSaver);
    const auto logind = service(logindIdle);

    const auto id = create();

    ASSERT_TRUE(waitUntil([&] {
        return holders() == std::vector<std::string>{"Xfce", "screen saver", "logind", "X11"};
    }));
    EXPECT_EQ(suspended, 1);
    EXPECT_EQ(locking(*logind).size(), 1U) << "its sleep lock would only be in the user's way";
    assertions().release(*id);
    EXPECT_TRUE(waitForLocking(*power, 2));
    EXPECT_TRUE(waitForLocking(*saver, 2));
    EXPECT_EQ(suspended, 0);
    EXPECT_THAT(holders(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, TheScreenMayBlankWhileOnlyTheSystemIsKeptAwake) {
    options.suspendScreenSaver = [](bool) {
        ADD_FAILURE();
        return true;
    };
    const auto logind = service(logindSleep);

    EXPECT_TRUE(create(systemOnly).has_value());
}

TEST_F(DesktopPowerAssertionsTest, XfceIsAskedForTheSystemAlone) {
    const auto power = service(freedesktopPowerManagement);
    const auto logind = service(logindSleep);

    ASSERT_TRUE(create(systemOnly).has_value());

    EXPECT_EQ(locking(*power).size(), 1U);
}

TEST_F(DesktopPowerAssertionsTest, TheSessionManagerGoesByTheNameOfItsDesktop) {
    desktop = QStringLiteral("MATE");
    const auto manager = service(gnomeSessionManager);

    ASSERT_TRUE(create().has_value());

    EXPECT_THAT(holders(), ElementsAre("MATE"));
}

TEST_F(DesktopPowerAssertionsTest, AScreenSaverCannotKeepTheSystemAwake) {
    const auto saver = service(screenSaver);

    EXPECT_EQ(create(systemOnly), std::nullopt);

    EXPECT_THAT(saver->calls(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, AreRefusedWithoutAnyService) {
    EXPECT_EQ(create(), std::nullopt);
    EXPECT_EQ(create(systemOnly), std::nullopt);
    EXPECT_EQ(assertions().report().state, ReportState::refused);
}

TEST_F(DesktopPowerAssertionsTest, AreRefusedWhereTheScreenSaverHasNoTimers) {
    options.suspendScreenSaver = [](bool) { return false; };

    EXPECT_EQ(create(), std::nullopt);
}

TEST(DesktopPowerAssertions, AreRefusedWithoutABus) {
    BusLink none(PrivateBus::none(), {});
    BusLockServices services(none, none, {});
    DesktopPowerAssertions assertions(services);

    EXPECT_EQ(assertions.create(display, 255, title), std::nullopt);
}

TEST_F(DesktopPowerAssertionsTest, UnknownTypesAndLevelsAreRefused) {
    const auto gnome = service(gnomeSessionManager);

    EXPECT_EQ(assertions().create("PreventNothing", 255, title), std::nullopt);
    EXPECT_EQ(assertions().create(display, 0, title), std::nullopt);

    EXPECT_THAT(gnome->calls(), IsEmpty());
}

TEST_F(DesktopPowerAssertionsTest, ARefusalIsReportedAtOnce) {
    const auto gnome = service(gnomeSessionManager);
    gnome->refuse(QStringLiteral("Inhibit"));

    EXPECT_EQ(create(), std::nullopt);

    // The reply, which has been processed, is still queued.
    QCoreApplication::processEvents();
    EXPECT_THAT(revoked, IsEmpty());
    EXPECT_EQ(assertions().report().state, ReportState::refused);
}

TEST_F(DesktopPowerAssertionsTest, TheNextServiceIsAskedWhenOneRefuses) {
    const auto gnome = service(gnomeSessionManager);
    const auto power = service(freedesktopPowerManagement);
    gnome->refuse(QStringLiteral("Inhibit"));

    EXPECT_TRUE(create().has_value());

    EXPECT_EQ(locking(*power).size(), 1U);
}

TEST_F(DesktopPowerAssertionsTest, RepliesOfTheWrongTypeCountAsRefusals) {
    const auto gnome = service(gnomeSessionManager);
    const auto logind = service(logindIdle);
    gnome->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(QString()); });
    logind->answer(QStringLiteral("Inhibit"), [](const auto& call) { return call.createReply(); });

    EXPECT_EQ(create(), std::nullopt);

    EXPECT_EQ(locking(*logind).size(), 2U);
}

TEST_F(DesktopPowerAssertionsTest, AGrantThatInhibitsNothingCountsAsARefusal) {
    const auto power = service(freedesktopPowerManagement);
    power->answer(QStringLiteral("HasInhibit"), [](const auto& call) { return call.createReply(false); });

    EXPECT_EQ(create(), std::nullopt);

    ASSERT_TRUE(waitForLocking(*power, 2));
    EXPECT_EQ(power->calls().back(), "UnInhibit(1u)");
}

TEST_F(DesktopPowerAssertionsTest, AConfirmedGrantIsHeld) {
    const auto power = service(freedesktopPowerManagement);
    power->answer(QStringLiteral("HasInhibit"), [](const auto& call) { return call.createReply(true); });

    EXPECT_TRUE(create().has_value());

    EXPECT_EQ(assertions().report(), (PowerAssertionReport{ReportState::held, {"Xfce"}}));
}

TEST_F(DesktopPowerAssertionsTest, EachOneIsReleasedSeparately) {
    const auto gnome = service(gnomeSessionManager);
    const auto first = create();
    const auto second = create(systemOnly);
    ASSERT_NE(first, second);

    assertions().release(*first);
    assertions().release(*first);
    assertions().release(4711);

    ASSERT_TRUE(waitForLocking(*gnome, 3));
    gnome->settle(session);
    EXPECT_EQ(locking(*gnome)[2], "Uninhibit(1u)");
    assertions().release(*second);
    ASSERT_TRUE(waitUntil([&] { return gnome->calls().back() == "Uninhibit(2u)"; }));
}

TEST_F(DesktopPowerAssertionsTest, DestructionReleasesEverything) {
    const auto gnome = service(gnomeSessionManager);
    ASSERT_TRUE(create().has_value());

    destroyAssertions();

    ASSERT_TRUE(waitForLocking(*gnome, 2));
    EXPECT_EQ(gnome->calls().back(), "Uninhibit(1u)");
}

}  // namespace
}  // namespace kestro
