#include "tests/desktop/shell_fixture.h"
#include "tests/desktop/status_item_client.h"
#include "tests/desktop/sway.h"
#include "tests/support/places.h"

#include <QFile>

namespace kestro {
namespace {

struct OnSway : ShellFixture {
    explicit OnSway(DesktopPanel panel = DesktopPanel::waybar) : ShellFixture(panel) {}

    void SetUp() override {
        if (const QString missing = Sway::missing(); !missing.isEmpty()) {
            GTEST_SKIP() << "needs " << missing.toStdString();
        }
    }

    /// Whether a file with that in its path is mapped into the program.
    bool maps(const char* part) const {
        QFile file(QStringLiteral("/proc/%1/maps").arg(kestro->processId()));
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(part);
    }

    void expectEveryWindow() {
        const QRect screen(QPoint(), DesktopSession::screenSize);
        for (const auto& [word, title] :
             {std::pair("popover", popover), {"dashboard", dashboard}, {"settings", settings}}) {
            command(word);
            ASSERT_TRUE(appears(title)) << word;
            EXPECT_TRUE(session.waitFor([&] { return screen.contains(*frame(title)); })) << word;
            session.screenshot(QStringLiteral("%1-%2").arg(
                QString::fromLatin1(testing::UnitTest::GetInstance()->current_test_suite()->name()),
                QString::fromLatin1(word)));
        }
    }

    /// The program that a bus name belongs to.
    QString owner(const QString& name) const {
        const QString bus = QStringLiteral("org.freedesktop.DBus");
        const QDBusMessage reply =
            session.call(bus, QStringLiteral("/"), bus, QStringLiteral("GetConnectionUnixProcessID"), {name});
        QFile file(QStringLiteral("/proc/%1/comm").arg(reply.arguments().value(0).toUInt()));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    }

    void expectSilentEnd() {
        kestro->terminate();
        ASSERT_TRUE(ends());
        EXPECT_EQ(kestro->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(kestro->exitCode(), 0);
        EXPECT_EQ(kestro->readAll().toStdString(), "");
    }
};

struct OnSwayWithX11 : OnSway {
    OnSwayWithX11() : OnSway(DesktopPanel::waybarBesideX11) {}
};

TEST_F(OnSway, WaybarShowsTheItem) {
    launch();

    EXPECT_EQ(owner(QStringLiteral("org.kde.StatusNotifierWatcher")), QStringLiteral("waybar"));
    EXPECT_TRUE(StatusItemClient(session).item(QStringLiteral("kestro-main")));
}

TEST_F(OnSway, WaybarShowsTheReadoutInAModule) {
    launch();
    const QString snippets = QString::fromStdString(sourceTree()) + QStringLiteral("/integrations/waybar/");
    QFile module(snippets + QStringLiteral("kestro.jsonc"));
    ASSERT_TRUE(module.open(QIODevice::ReadOnly));
    session.writeFile(QStringLiteral("second-bar"),
                      R"({"position": "bottom", "height": 30, "modules-right": ["custom/kestro"],)"
                      "\n" +
                          module.readAll() + "}\n");
    const QPoint inTheModule(1200, 785);
    const bool wasEmpty = !session.showsAnItemAt(inTheModule);

    session.start(
        QStringLiteral("env"),
        {QStringLiteral("PATH=%1:%2").arg(QString::fromStdString(buildTree()), qEnvironmentVariable("PATH")),
         QStringLiteral("waybar"), QStringLiteral("--config"), session.path(QStringLiteral("second-bar")),
         QStringLiteral("--style"), snippets + QStringLiteral("kestro.css")});

    // It hosts the readout, so the item in the other bar goes.
    EXPECT_TRUE(session.waitFor([&] { return !StatusItemClient(session).item(QStringLiteral("kestro-main")); }));
    EXPECT_TRUE(session.waitFor([&] { return session.showsAnItemAt(inTheModule); }));
    EXPECT_TRUE(wasEmpty);
}

TEST_F(OnSway, OpensEveryWindowWithoutX11AndOpenGL) {
    launch();

    expectEveryWindow();

    EXPECT_TRUE(maps("libqwayland"));
    for (const char* part : {"libqxcb", "libGL.so", "_mesa.so", "/dri/", "libgallium", "libLLVM"}) {
        EXPECT_FALSE(maps(part)) << part;
    }
    expectSilentEnd();
}

TEST_F(OnSwayWithX11, PrefersX11) {
    launch();

    expectEveryWindow();

    EXPECT_TRUE(maps("libqxcb"));
    EXPECT_FALSE(maps("libqwayland"));
    expectSilentEnd();
}

TEST_F(OnSwayWithX11, HeedsAPlatformChosenByTheUser) {
    launch({QStringLiteral("QT_QPA_PLATFORM=wayland")});

    EXPECT_TRUE(maps("libqwayland"));
    EXPECT_FALSE(maps("libqxcb"));
    expectSilentEnd();
}

}  // namespace
}  // namespace kestro
