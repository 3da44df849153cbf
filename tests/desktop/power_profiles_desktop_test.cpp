#include "tests/desktop/daemons_fixture.h"

#include <QDBusVariant>
#include <QString>

#include <gtest/gtest.h>

namespace kestro {
namespace {

struct ProfilesOnTheDesktop : DaemonsOnTheDesktop {
    /// Describes the daemon with its test driver, and starts an authority that consents to everything, or nothing.
    void offerDaemon(bool consents) {
        session.start(QStringLiteral("/usr/bin/python3"),
                      {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--system"),
                       QStringLiteral("--template"), QStringLiteral("polkitd")});
        const QString authority = QStringLiteral("org.freedesktop.PolicyKit1");
        ASSERT_TRUE(isOwned(Bus::system, authority));
        ask(Bus::system, authority, QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
            QStringLiteral("org.freedesktop.DBus.Mock"), QStringLiteral("AllowUnknown"), {consents});
        session.offerSystemService(
            QStringLiteral("net.hadess.PowerProfiles"),
            QStringLiteral("POWER_PROFILE_DAEMON_FAKE_DRIVER=1 /usr/libexec/power-profiles-daemon"));
    }

    QString active() {
        return ask(Bus::system, QStringLiteral("net.hadess.PowerProfiles"),
                   QStringLiteral("/net/hadess/PowerProfiles"), QStringLiteral("org.freedesktop.DBus.Properties"),
                   QStringLiteral("Get"),
                   {QStringLiteral("net.hadess.PowerProfiles"), QStringLiteral("ActiveProfile")})
            .value<QDBusVariant>()
            .variant()
            .toString();
    }
};

TEST_F(ProfilesOnTheDesktop, ADaemonThatIsNotRunningIsStartedByName) {
    NEEDS_PROGRAM("/usr/libexec/power-profiles-daemon");
    offerDaemon(true);
    launch();
    ASSERT_TRUE(waitUntil([&] { return active() == QStringLiteral("balanced"); }));

    choose(QStringLiteral("High Power"));

    EXPECT_TRUE(checks(QStringLiteral("High Power")));
    EXPECT_EQ(active(), QStringLiteral("performance"));
}

TEST_F(ProfilesOnTheDesktop, TheModeStaysWithoutTheAdministratorsConsent) {
    NEEDS_PROGRAM("/usr/libexec/power-profiles-daemon");
    offerDaemon(false);
    launch();
    ASSERT_TRUE(waitUntil([&] { return active() == QStringLiteral("balanced"); }));

    choose(QStringLiteral("Low Power"));

    EXPECT_TRUE(checks(QStringLiteral("Balanced (Automatic)")));
    EXPECT_EQ(active(), QStringLiteral("balanced"));
}

}  // namespace
}  // namespace kestro
