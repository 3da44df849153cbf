#include "tests/desktop/shell_fixture.h"

#include <QFile>

namespace kestro {
namespace {

/// A session bus that offers services and reports which ones it has tried to start.
struct ActivationOnTheDesktop : ShellFixture {
    void offer(const QString& name) const {
        QFile file(session.path(QStringLiteral("services/%1.service").arg(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral("[D-BUS Service]\nName=%1\nExec=/bin/false\n").arg(name).toUtf8());
    }

    void askBus(const QString& method, const QVariantList& arguments = {}) const {
        const QString bus = QStringLiteral("org.freedesktop.DBus");
        QDBusMessage message =
            QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
        message.setArguments(arguments);
        session.bus().send(message);
    }
};

TEST_F(ActivationOnTheDesktop, StartsNoService) {
    const QString control = QStringLiteral("kestro.test.Control");
    for (const char* name :
         {"org.freedesktop.portal.Desktop", "org.freedesktop.ScreenSaver", "org.freedesktop.PowerManagement",
          "org.gnome.SessionManager", "org.kde.StatusNotifierWatcher", "org.xfce.Xfconf"}) {
        offer(QString::fromUtf8(name));
    }
    offer(control);
    askBus(QStringLiteral("ReloadConfig"));

    // The toolkit looks for services of known desktops.
    launch({QStringLiteral("XDG_CURRENT_DESKTOP=GNOME")});
    command("dashboard");
    ASSERT_TRUE(appears(dashboard));

    // The bus starts services in the order of the requests.
    askBus(QStringLiteral("StartServiceByName"), {control, 0U});
    ASSERT_TRUE(waitUntil([&] { return session.startedServices().contains(control); }));
    EXPECT_EQ(session.startedServices().join(QLatin1Char(' ')).toStdString(), control.toStdString());
}

}  // namespace
}  // namespace kestro
