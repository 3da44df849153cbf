#include "tests/desktop/shell_fixture.h"

#include <QDir>
#include <QFile>

namespace kestro {
namespace {

/// A session bus that could start services. Starting one leaves a file with its name.
struct ActivationOnTheDesktop : ShellFixture {
    ActivationOnTheDesktop() { QDir().mkpath(session.path(QStringLiteral("started"))); }

    void offer(const QString& name) const {
        QFile file(session.path(QStringLiteral("services/%1.service").arg(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral("[D-BUS Service]\nName=%1\nExec=/usr/bin/touch %2\n")
                       .arg(name, session.path(QStringLiteral("started/")) + name)
                       .toUtf8());
    }

    void askBus(const QString& method, const QVariantList& arguments = {}) const {
        const QString bus = QStringLiteral("org.freedesktop.DBus");
        QDBusMessage message =
            QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
        message.setArguments(arguments);
        session.bus().send(message);
    }

    QStringList started() const { return QDir(session.path(QStringLiteral("started"))).entryList(QDir::Files); }
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
    ASSERT_TRUE(waitUntil([&] { return started().contains(control); }));
    EXPECT_EQ(started().join(QLatin1Char(' ')).toStdString(), control.toStdString());
}

}  // namespace
}  // namespace kestro
