#include "tests/platform/desktop/power_profiles_fixture.h"

namespace kestro {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::ElementsAre;

TEST_F(PowerProfilesTest, ReportTheDaemonsProfileUnderEitherName) {
    for (const auto& name : {oldName, newName}) {
        FakeDaemon daemon(bus.connect(), name);
        for (const auto& [profile, mode] : std::map<QString, char>{{QStringLiteral("power-saver"), '1'},
                                                                   {QStringLiteral("balanced"), '0'},
                                                                   {QStringLiteral("performance"), '2'}}) {
            daemon.setProfile(profile);
            PowerProfiles fresh(link, paths, timing);

            EXPECT_EQ(inBackground([&] { return fresh.pmsetReport(); }), reportOf(mode));
        }
    }
}

TEST_F(PowerProfilesTest, ReadingQueriesTheDaemonOnce) {
    FakeDaemon daemon(bus.connect(), newName);

    for (int reading = 0; reading < 50; ++reading) {
        report();
    }

    EXPECT_THAT(daemon.service.calls(), ElementsAre("GetAll(\"org.freedesktop.UPower.PowerProfiles\")"));
}

TEST_F(PowerProfilesTest, TheNextReadingRetriesADaemonThatRefused) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.refuse(QStringLiteral("GetAll"));
    EXPECT_EQ(report(), header);

    daemon.service.answer(QStringLiteral("GetAll"), [](const QDBusMessage& call) {
        return call.createReply(QVariantMap{{QStringLiteral("ActiveProfile"), QStringLiteral("performance")}});
    });

    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, FollowTheDaemonsAnnouncements) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));

    daemon.announce(QStringLiteral("performance"));
    EXPECT_TRUE(reports(reportOf('2')));
    daemon.setProfile(QStringLiteral("power-saver"));
    daemon.announce({}, {QStringLiteral("ActiveProfile")}, daemon.service.connection());
    EXPECT_TRUE(reports(reportOf('1')));
}

TEST_F(PowerProfilesTest, IgnoreSignalsFromOtherSenders) {
    FakeDaemon daemon(bus.connect(), newName);
    const FakeService stranger(bus.connect(), QStringLiteral("org.example.Stranger"));
    ASSERT_EQ(report(), reportOf('0'));

    daemon.announce({{QStringLiteral("ActiveProfile"), QStringLiteral("performance")}}, {}, stranger.connection());
    stranger.settle(system);
    daemon.service.settle(system);

    EXPECT_EQ(report(), reportOf('0'));
}

TEST_F(PowerProfilesTest, ReportNoModeForAnUnknownProfile) {
    for (const QVariant& nonsense :
         {QVariant(7), QVariant(QStringLiteral("turbo")), QVariant(QStringList{QStringLiteral("balanced")}),
          QVariant(QString(100'000, QLatin1Char('x')))}) {
        FakeDaemon daemon(bus.connect(), newName);
        daemon.setProfile(nonsense);
        PowerProfiles fresh(link, paths, timing);

        EXPECT_EQ(inBackground([&] { return fresh.pmsetReport(); }), header);
    }
}

TEST_F(PowerProfilesTest, SurviveMalformedSignals) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    auto signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/UPower/PowerProfiles"),
                                             QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("PropertiesChanged"));

    for (const auto& arguments : {QVariantList{}, QVariantList{newName}, QVariantList{newName, 1, 2},
                                  QVariantList{newName, QVariantMap{}}}) {
        signal.setArguments(arguments);
        daemon.service.connection().send(signal);
    }
    daemon.announce({{QStringLiteral("Other"), 3}}, {QStringLiteral("Profiles")}, daemon.service.connection());
    daemon.announce(QStringLiteral("performance"));

    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, ReportNoModeUntilASlowDaemonReplies) {
    timing.firstAnswer = 10ms;
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.hold(true);

    EXPECT_TRUE(reports(std::string(header)));
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));
    daemon.setProfile(QStringLiteral("performance"));
    daemon.service.answerHeld();

    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, FollowWhicheverDaemonIsPresent) {
    setKernel("low-power", "low-power balanced performance");
    FakeDaemon older(bus.connect(), oldName);
    older.setProfile(QStringLiteral("performance"));
    ASSERT_EQ(report(), reportOf('2'));

    {
        const FakeDaemon newer(bus.connect(), newName);
        EXPECT_TRUE(reports(reportOf('0')));
    }
    EXPECT_TRUE(reports(reportOf('2')));
    older.service.vanish();
    EXPECT_TRUE(reports(reportOf('1'))) << "the kernel's profile";
    older.service.appear();
    EXPECT_TRUE(reports(reportOf('2')));
}

TEST_F(PowerProfilesTest, SwitchAndReadBack) {
    FakeDaemon daemon(bus.connect(), oldName);
    ASSERT_EQ(report(), reportOf('0'));

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('2'));
    EXPECT_EQ(daemon.service.calls()[1],
              "Set(\"net.hadess.PowerProfiles\", \"ActiveProfile\", <\"performance\">)");
    EXPECT_TRUE(daemon.wasInteractive) << "the user may be prompted";
}

TEST_F(PowerProfilesTest, ShowTheOldProfileWhenTheDaemonRevertsAtOnce) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.answer(QStringLiteral("Set"), [&](const QDBusMessage& call) {
        daemon.announce(QStringLiteral("performance"));
        daemon.announce(QStringLiteral("balanced"));
        return call.createReply();
    });

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('0'));
    EXPECT_TRUE(failsWith(2, PowerModeConditions::Failure::reverted));
}

TEST_F(PowerProfilesTest, ShowTheOldProfileAfterARefusedSwitch) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.refuse(QStringLiteral("Set"), QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"));

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('0'));
    EXPECT_TRUE(failsWith(2, PowerModeConditions::Failure::denied));
}

TEST_F(PowerProfilesTest, ASwitchEndsWhenTheDaemonVanishes) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);
    auto switching = std::async(std::launch::async, [&] { profiles().select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));

    daemon.service.vanish();

    EXPECT_TRUE(waitUntil([&] { return switching.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(report(), header);
}

TEST_F(PowerProfilesTest, ANewerSwitchEndsTheWaitOfAnOlderOne) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);
    auto older = std::async(std::launch::async, [&] { profiles().select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));

    auto newer = std::async(std::launch::async, [&] { profiles().select(PowerProfile::powerSaver); });
    EXPECT_TRUE(waitUntil([&] { return older.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(newer.wait_for(0s), std::future_status::timeout);
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 2; }));
    daemon.service.hold(false);
    daemon.service.answerHeld();

    EXPECT_TRUE(waitUntil([&] { return newer.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(report(), reportOf('1'));
}

TEST_F(PowerProfilesTest, ClosingReleasesAllWaiters) {
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);
    auto switching = std::async(std::launch::async, [&] { profiles().select(PowerProfile::performance); });
    ASSERT_TRUE(waitUntil([&] { return daemon.service.heldCalls() == 1; }));

    profiles().close();

    switching.get();
    profiles().select(PowerProfile::powerSaver);
}

TEST_F(PowerProfilesTest, GiveUpOnADaemonThatNeverAnswers) {
    timing.consent = 30ms;
    FakeDaemon daemon(bus.connect(), newName);
    ASSERT_EQ(report(), reportOf('0'));
    daemon.service.hold(true);

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('0'));
}

TEST_F(PowerProfilesTest, AreReadAgainWhenTheBusIsBack) {
    auto daemon = std::make_unique<FakeDaemon>(bus.connect(), newName);
    daemon->setProfile(QStringLiteral("performance"));
    ASSERT_EQ(report(), reportOf('2'));

    bus.kill();
    EXPECT_TRUE(reports(std::string(header)));
    daemon.reset();
    bus.restart();
    daemon = std::make_unique<FakeDaemon>(bus.connect(), newName);
    daemon->setProfile(QStringLiteral("power-saver"));

    EXPECT_TRUE(reports(reportOf('1')));
    select(PowerProfile::performance);
    EXPECT_TRUE(reports(reportOf('2')));
    daemon->announce(QStringLiteral("power-saver"));
    EXPECT_TRUE(reports(reportOf('1')));
}

TEST_F(PowerProfilesTest, KnowTheProfilesOfATwoProfileMachine) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.setOffered({QStringLiteral("power-saver"), QStringLiteral("balanced")});
    ASSERT_EQ(report(), reportOf('0'));
    EXPECT_EQ(profiles().conditions().isOffered, (std::array{true, true, false}));

    daemon.service.refuse(QStringLiteral("Set"), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    select(PowerProfile::performance);

    EXPECT_TRUE(failsWith(2, PowerModeConditions::Failure::rejected));
    EXPECT_EQ(report(), reportOf('0'));
}

TEST_F(PowerProfilesTest, WorkWithTunedPpd) {
    // Its replies, from tuned/ppd/controller.py and tuned/exports/dbus_exporter_with_properties.py: an unmapped
    // profile of TuneD is "unknown", and every error has the generic name of the Python binding.
    const auto refuse = [](const QString& text) {
        return [text](const QDBusMessage& call) {
            return call.createErrorReply(
                QStringLiteral("org.freedesktop.DBus.Python.dbus.exceptions.DBusException"), text);
        };
    };
    FakeDaemon daemon(bus.connect(), oldName);
    daemon.setOffered({QStringLiteral("power-saver"), QStringLiteral("balanced"), QStringLiteral("performance")});
    daemon.setProfile(QStringLiteral("unknown"));
    EXPECT_EQ(report(), header);
    EXPECT_EQ(profiles().conditions().isOffered, (std::array{true, true, true}));

    select(PowerProfile::powerSaver);
    EXPECT_EQ(report(), reportOf('1'));
    daemon.announce(QStringLiteral("performance"));
    EXPECT_TRUE(reports(reportOf('2')));
    daemon.service.answer(QStringLiteral("Set"), refuse(QStringLiteral("Error setting profile balanced'")));
    select(PowerProfile::balanced);
    EXPECT_TRUE(failsWith(0, PowerModeConditions::Failure::rejected));
    daemon.service.answer(QStringLiteral("Set"), refuse(QStringLiteral("Unauthorized")));
    select(PowerProfile::performance);

    EXPECT_TRUE(failsWith(2, PowerModeConditions::Failure::denied));
}

}  // namespace
}  // namespace kestro
