#include "tests/support/event_waiting.h"
#include "tests/support/places.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <set>
#include <string_view>

namespace kestro {
namespace {

/// The scripts that run programs without a display, started from a session whose environment conflicts with
/// them.
class VirtualSession : public testing::Test {
protected:
    ~VirtualSession() override {
        script.terminate();
        script.waitForFinished();
    }

    void start(const char* name, const QStringList& arguments) {
        QProcessEnvironment hostile;
        hostile.insert(QStringLiteral("PATH"), path);
        hostile.insert(QStringLiteral("HOME"), QStringLiteral("/dev/null"));
        hostile.insert(QStringLiteral("TMPDIR"), folder.path());
        hostile.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        hostile.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        hostile.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("3"));
        hostile.insert(QStringLiteral("QT_STYLE_OVERRIDE"), QStringLiteral("windows"));
        hostile.insert(QStringLiteral("GDK_SCALE"), QStringLiteral("2"));
        hostile.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-nonexistent"));
        hostile.insert(QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("/proc"));
        hostile.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("KDE"));
        hostile.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("wayland"));
        hostile.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent"));
        hostile.insert(QStringLiteral("KESTRO_TEST_RUN"), qEnvironmentVariable("KESTRO_TEST_RUN"));
        script.setProcessEnvironment(hostile);
        script.start(QString::fromStdString(sourceTree() + "/tools/") + QString::fromUtf8(name), arguments);
        ASSERT_TRUE(script.waitForStarted());
    }

    /// Whether the script prints a match before it ends, within half a minute.
    bool prints(const QRegularExpression& expected) {
        bool isThere = false;
        waitUntil(
            [&] {
                const bool hasEnded = script.state() == QProcess::NotRunning;
                printed += QString::fromUtf8(script.readAllStandardOutput());
                isThere = expected.match(printed).hasMatch();
                return isThere || hasEnded;
            },
            std::chrono::seconds(60));
        return isThere;
    }

    bool ends() {
        return waitUntil([&] { return script.state() == QProcess::NotRunning; });
    }

    QTemporaryDir folder{QDir::tempPath() + QStringLiteral("/a space XXXXXX")};
    QString path = qEnvironmentVariable("PATH");
    QProcess script;
    QString printed;
};

std::size_t coloursOf(const QImage& picture) {
    std::set<QRgb> found;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            found.insert(picture.pixel(x, y));
        }
    }
    return found.size();
}

TEST_F(VirtualSession, PrintsTheReadoutAndCapturesTheSurfacesWhateverTheCallersSession) {
    const QString pictures = folder.filePath(QStringLiteral("pictures of it"));

    start("virtual_session.sh", {QString::fromStdString(buildTree() + "/tests/kestro_under_test"), pictures});

    EXPECT_TRUE(prints(QRegularExpression(QStringLiteral("^RAM \\d+% · "), QRegularExpression::MultilineOption)))
        << printed.toStdString() << script.readAllStandardError().toStdString();
    EXPECT_TRUE(
        prints(QRegularExpression(QStringLiteral("^Kestro runs on "), QRegularExpression::MultilineOption)))
        << printed.toStdString() << script.readAllStandardError().toStdString();
    for (const char* surface : {"readout", "popover", "dashboard", "settings"}) {
        const QImage picture(pictures + QLatin1Char('/') + QString::fromUtf8(surface) + QStringLiteral(".png"));
        EXPECT_EQ(picture.size(), QSize(1600, 1000)) << surface;
        // A screen without a window has only one colour.
        EXPECT_GT(coloursOf(picture), 50U) << surface;
        // Windows are not scaled: the left half beside the popover is empty.
        if (surface == std::string_view("popover")) {
            EXPECT_EQ(coloursOf(picture.copy(0, 0, 800, 1000)), 1U);
        }
    }
    script.terminate();
    EXPECT_TRUE(ends());
    EXPECT_EQ(script.exitCode(), 128 + SIGTERM);
}

TEST_F(VirtualSession, LeavesNothingBehindWhenItIsStopped) {
    start("private_session.sh", {QStringLiteral("sh"), QStringLiteral("-c"),
                                 QStringLiteral("setsid sleep 600 & echo home=$HOME child=$!; sleep 600")});
    const QRegularExpression places(QStringLiteral("home=(\\S+) child=(\\d+)\n"));
    ASSERT_TRUE(prints(places)) << script.readAllStandardError().toStdString();
    const auto found = places.match(printed);
    ASSERT_TRUE(QDir(found.captured(1)).exists());

    script.terminate();

    EXPECT_TRUE(ends());
    EXPECT_FALSE(QDir(found.captured(1)).exists());
    // Its command line is gone once it has ended, even if it has not been reaped yet. It is not the script's
    // child, which cannot wait for it.
    EXPECT_TRUE(waitUntil([&] {
        QFile child(QStringLiteral("/proc/%1/cmdline").arg(found.captured(2)));
        return !child.open(QIODevice::ReadOnly) || child.readAll().isEmpty();
    }));
}

TEST_F(VirtualSession, EndsWithTheStatusOfItsProgram) {
    start("private_session.sh", {QStringLiteral("sh"), QStringLiteral("-c"), QStringLiteral("exit 7")});

    EXPECT_TRUE(ends());
    EXPECT_EQ(script.exitCode(), 7);
}

TEST_F(VirtualSession, ReportsWhatFailsToStart) {
    const QTemporaryDir programs(QString::fromStdString(buildTree()) + QStringLiteral("/programs-XXXXXX"));
    QFile server(programs.filePath(QStringLiteral("Xvfb")));
    ASSERT_TRUE(server.open(QIODevice::WriteOnly));
    server.write("#!/bin/sh\necho no screens found >&2\nexit 1\n");
    server.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    server.close();
    path = programs.path() + QLatin1Char(':') + path;

    start("private_session.sh", {QStringLiteral("true")});

    EXPECT_TRUE(ends());
    EXPECT_EQ(script.exitCode(), 1);
    EXPECT_EQ(script.readAllStandardError(), "private session: Xvfb does not start\nno screens found\n");
}

}  // namespace
}  // namespace kestro
