#include "tests/desktop/shell_fixture.h"
#include "tests/support/places.h"

#include <QDBusConnectionInterface>

#include <cstdlib>

namespace kestro {
namespace {

/// Another program of the session that shows the readout: the one for panels without a service of their own.
struct ReadoutOnTheDesktop : ShellFixture {
    const QString printer = QString::fromStdString(buildTree()) + QStringLiteral("/kestro-readout");

    QByteArray printed(const QStringList& arguments) const { return session.output(printer, arguments); }

    QVariant property(const char* name) const {
        const QString readout = QStringLiteral("kestro.Readout");
        return session.property(readout, QStringLiteral("/kestro/Readout"), readout, QString::fromLatin1(name));
    }
};

TEST_F(ReadoutOnTheDesktop, IsTheTextOfTheStrip) {
    launch();

    EXPECT_TRUE(session.waitFor([&] {
        const QString text = property("Text").toString();
        return text.startsWith(QStringLiteral("RAM ")) && text.contains(QLatin1Char('%')) &&
               printed({QStringLiteral("--once")}).trimmed() == text.toUtf8();
    }));
}

TEST_F(ReadoutOnTheDesktop, ReplacesTheStripWhileAnotherProgramShowsIt) {
    launch();

    QProcess& host = session.start(printer, {QStringLiteral("--host")});
    EXPECT_TRUE(session.waitFor([&] { return !session.strip().has_value(); }));
    EXPECT_TRUE(property("Hosted").toBool());

    host.kill();
    EXPECT_TRUE(session.waitFor([&] { return session.strip().has_value(); }));
}

TEST_F(ReadoutOnTheDesktop, OpensThePopoverBelowTheClickInAnotherPanel) {
    launch();

    printed(
        {QStringLiteral("--show"), QStringLiteral("popover"), QStringLiteral("--at"), QStringLiteral("640,5")});
    ASSERT_TRUE(appears(popover));

    EXPECT_TRUE(session.waitFor([&] {
        const auto place = frame(popover);
        return place && std::abs(place->right() - 640) <= 1;
    }));
}

TEST_F(ReadoutOnTheDesktop, ShowsTheWindows) {
    launch();

    printed({QStringLiteral("--show"), QStringLiteral("dashboard")});
    EXPECT_TRUE(appears(dashboard));
    printed({QStringLiteral("--show"), QStringLiteral("settings")});
    EXPECT_TRUE(appears(settings));
}

TEST_F(ReadoutOnTheDesktop, StartsTheProgramForARequestButNotForTheReadout) {
    ASSERT_TRUE(session.failure().isEmpty()) << session.failure().toStdString();
    session.writeFile(QStringLiteral("services/kestro.Readout.service"),
                      "[D-BUS Service]\nName=kestro.Readout\nExec=\"" + QByteArray::fromStdString(buildTree()) +
                          "/tests/kestro_under_test\"\n");
    session.bus().interface()->call(QStringLiteral("ReloadConfig"));

    EXPECT_EQ(printed({QStringLiteral("--once")}), "\n");
    EXPECT_FALSE(session.bus().interface()->isServiceRegistered(QStringLiteral("kestro.Readout")));

    printed({QStringLiteral("--show"), QStringLiteral("dashboard")});
    EXPECT_TRUE(appears(dashboard));
}

}  // namespace
}  // namespace kestro
