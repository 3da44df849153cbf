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

    /// Lets another program's window reserve space at the top of the screen, as a panel does, and waits until the
    /// strip has made room.
    void reserveTop() {
        const QString name = QStringLiteral("panel");
        session.start(QStringLiteral("xev"),
                      {QStringLiteral("-name"), name, QStringLiteral("-event"), QStringLiteral("keyboard")});
        const auto xprop = [&](const QStringList& arguments) {
            return session.output(QStringLiteral("xprop"), QStringList{QStringLiteral("-name"), name} + arguments);
        };
        ASSERT_TRUE(
            session.waitFor([&] { return xprop({QStringLiteral("WM_STATE")}).contains("window state: Normal"); }));
        const QString strut = QStringLiteral("_NET_WM_STRUT_PARTIAL");
        xprop({QStringLiteral("-f"), strut, QStringLiteral("32c"), QStringLiteral("-set"), strut,
               QStringLiteral("0,0,%1,0,0,0,0,0,0,1279,0,0").arg(panelHeight)});
        ASSERT_TRUE(session.waitFor([&] {
            const auto strip = session.strip();
            return strip && strip->frame.top() >= panelHeight;
        }));
    }

    /// Waits until the popover is below the reserved space, with its right edge at `x`.
    void expectPopoverBelowThePanel(int x) const {
        ASSERT_TRUE(appears(popover));
        const auto isInPlace = [&] {
            const auto place = frame(popover);
            return place && std::abs(place->right() - x) <= 1 && place->top() >= panelHeight &&
                   place->top() <= panelHeight + largestGap;
        };
        if (!session.waitFor(isInPlace)) {
            const QRect place = frame(popover).value_or(QRect());
            ADD_FAILURE() << "its top is " << place.top() << ", its right edge " << place.right();
        }
    }

    static constexpr int panelHeight = 60;
    static constexpr int largestGap = 12;
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
    reserveTop();

    printed(
        {QStringLiteral("--show"), QStringLiteral("popover"), QStringLiteral("--at"), QStringLiteral("640,5")});

    expectPopoverBelowThePanel(640);
}

TEST_F(ReadoutOnTheDesktop, OpensThePopoverBelowThePointerOverAPanel) {
    launch();
    reserveTop();
    session.moveTo({640, 50});

    printed({QStringLiteral("--show"), QStringLiteral("popover")});

    expectPopoverBelowThePanel(640);
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
