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
            PowerProfiles fresh(system, paths, timing);

            EXPECT_EQ(inBackground([&] { return fresh.pmsetReport(); }), reportOf(mode));
        }
    }
}

TEST_F(PowerProfilesTest, ReadingQueriesTheDaemonOnce) {
    FakeDaemon daemon(bus.connect(), newName);

    for (int reading = 0; reading < 50; ++reading) {
        report();
    }

    EXPECT_THAT(daemon.service.calls(),
                ElementsAre("Get(\"org.freedesktop.UPower.PowerProfiles\", \"ActiveProfile\")"));
}

TEST_F(PowerProfilesTest, TheNextReadingRetriesADaemonThatRefused) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.refuse(QStringLiteral("Get"));
    EXPECT_EQ(report(), header);

    daemon.service.answer(QStringLiteral("Get"), [](const QDBusMessage& call) {
        return call.createReply(QVariant::fromValue(QDBusVariant(QStringLiteral("performance"))));
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
        PowerProfiles fresh(system, paths, timing);

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
}

TEST_F(PowerProfilesTest, ShowTheOldProfileAfterARefusedSwitch) {
    FakeDaemon daemon(bus.connect(), newName);
    daemon.service.refuse(QStringLiteral("Set"), QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"));

    select(PowerProfile::performance);

    EXPECT_EQ(report(), reportOf('0'));
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

}  // namespace
}  // namespace kestro
