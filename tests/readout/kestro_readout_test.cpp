#include "shell/linux/readout/bus_readout_service.h"
#include "tests/support/event_waiting.h"
#include "tests/support/places.h"
#include "tests/support/private_bus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace kestro {
namespace {

/// The program on a private bus, with the service that a running Kestro offers there.
class KestroReadoutTest : public testing::Test {
protected:
    KestroReadoutTest() {
        readout.text = QStringLiteral("RAM 42%");
        readout.widestText = QStringLiteral("RAM 100%");
        readout.toolTip = QStringLiteral("Kestro: RAM 42%");
    }

    ~KestroReadoutTest() override {
        for (const auto& process : processes_) {
            process->kill();
            process->waitForFinished();
        }
    }

    void startKestro() {
        service = std::make_unique<BusReadoutService>(bus.connect(),
                                                      [this](bool isHosted) { hosted.push_back(isHosted); });
        service->publish({.readout = [this] { return readout; },
                          .figures = [this] { return figures; },
                          .togglePopover = [this](const QRect&) { ++popovers; },
                          .showDashboard = [this] { ++dashboards; },
                          .showSettings = [this](std::optional<SettingsTab>) { ++settings; },
                          .toggleKeepAwake = [this] { ++keepAwakes; },
                          .buildMenu = [] { return Menu(); }});
    }

    QProcess& start(const QStringList& arguments) { return start(printer(), arguments); }

    QProcess& start(const QString& program, const QStringList& arguments) {
        processes_.push_back(std::make_unique<QProcess>());
        QProcess& process = *processes_.back();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        // Without the identifier of the daemon, which another one at the same address does not have.
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                           bus.address().section(QLatin1Char(','), 0, 0));
        process.setProcessEnvironment(environment);
        // Makes the child a copy instead of a sharer of this process's memory, which the thread sanitizer needs.
        process.setChildProcessModifier([] {});
        QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, [this, &process] {
            if (&process == processes_.back().get()) {
                output += process.readAllStandardOutput();
            }
        });
        process.start(program, arguments);
        return process;
    }

    static QString printer() { return QString::fromStdString(buildTree()) + QStringLiteral("/kestro-readout"); }

    /// Runs the program to its end; its exit status.
    int run(const QStringList& arguments) { return run(printer(), arguments); }

    /// Runs the program with its output read by a command that ends, without any change of the readout.
    int runUntilTheReaderEnds(const QString& reader, const QStringList& arguments) {
        return run(QStringLiteral("bash"),
                   QStringList{QStringLiteral("-c"), QStringLiteral("set -o pipefail; \"$0\" \"$@\" | ") + reader,
                               printer()} +
                       arguments);
    }

    int run(const QString& program, const QStringList& arguments) {
        output.clear();
        QProcess& process = start(program, arguments);
        EXPECT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        errors = process.readAllStandardError();
        return process.exitCode();
    }

    bool prints(const QByteArray& expected) {
        const bool isPrinted = waitUntil([&] { return output == expected; }, std::chrono::seconds(10));
        EXPECT_EQ(output.toStdString(), expected.toStdString());
        return isPrinted;
    }

    void show(const QString& text) {
        readout.text = text;
        service->readoutDidUpdate();
    }

    /// How often a process has gone to sleep.
    static long long sleeps(const QProcess& process) {
        QFile file(QStringLiteral("/proc/%1/status").arg(process.processId()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        for (const QByteArray& row : file.readAll().split('\n')) {
            if (row.startsWith("voluntary_ctxt_switches:")) {
                return row.mid(row.indexOf(':') + 1).trimmed().toLongLong();
            }
        }
        ADD_FAILURE() << "the kernel reports no switches";
        return 0;
    }

    PrivateBus bus;
    std::unique_ptr<BusReadoutService> service;
    SharedReadout readout;
    ReadoutFigures figures;
    std::vector<bool> hosted;
    int popovers = 0;
    int dashboards = 0;
    int settings = 0;
    int keepAwakes = 0;
    QByteArray output;  ///< of the process started last
    QByteArray errors;

private:
    std::vector<std::unique_ptr<QProcess>> processes_;
};

TEST_F(KestroReadoutTest, PrintsALineForEachChange) {
    startKestro();
    start({});
    ASSERT_TRUE(prints("RAM 42%\n"));

    show(QStringLiteral("RAM 43%"));
    ASSERT_TRUE(prints("RAM 42%\nRAM 43%\n"));

    readout.toolTip = QStringLiteral("not printed");
    service->readoutDidUpdate();
    show(QStringLiteral("RAM 44%"));
    EXPECT_TRUE(prints("RAM 42%\nRAM 43%\nRAM 44%\n"));
}

TEST_F(KestroReadoutTest, WaitsForKestroAndForItsReturn) {
    start({});
    ASSERT_TRUE(prints("\n"));

    startKestro();
    ASSERT_TRUE(prints("\nRAM 42%\n"));

    service.reset();
    ASSERT_TRUE(prints("\nRAM 42%\n\n"));

    startKestro();
    ASSERT_TRUE(prints("\nRAM 42%\n\nRAM 42%\n"));
    show(QStringLiteral("RAM 43%"));
    EXPECT_TRUE(prints("\nRAM 42%\n\nRAM 42%\nRAM 43%\n"));
}

TEST_F(KestroReadoutTest, ConnectsAgainToABusThatWasLost) {
    startKestro();
    start({});
    ASSERT_TRUE(prints("RAM 42%\n"));

    bus.kill();
    ASSERT_TRUE(prints("RAM 42%\n\n"));

    bus.restart();
    startKestro();
    EXPECT_TRUE(prints("RAM 42%\n\nRAM 42%\n"));
}

TEST_F(KestroReadoutTest, SleepsBetweenChanges) {
    startKestro();
    const QProcess& process = start({});
    ASSERT_TRUE(prints("RAM 42%\n"));
    const long long before = sleeps(process);

    QDBusConnection other = bus.connect();
    for (int percent = 0; percent < 50; ++percent) {
        figures.memoryPercent = percent;
        service->readoutDidUpdate();
        other.interface()->isServiceRegistered(QStringLiteral("kestro.Readout"));
    }
    show(QStringLiteral("RAM 43%"));
    ASSERT_TRUE(prints("RAM 42%\nRAM 43%\n"));

    EXPECT_LE(sleeps(process) - before, 4);
}

TEST_F(KestroReadoutTest, FollowsTheMemoryForWaybar) {
    figures.memoryPercent = 42;
    startKestro();
    start({QStringLiteral("--waybar")});
    const QByteArray rest = R"("tooltip":"Kestro: RAM 42%","class":["balanced"])";
    const QByteArray first = "{\"text\":\"RAM 42%\"," + rest + ",\"percentage\":42}\n";
    ASSERT_TRUE(prints(first));

    figures.memoryPercent = 43;
    service->readoutDidUpdate();
    const QByteArray second = "{\"text\":\"RAM 42%\"," + rest + ",\"percentage\":43}\n";
    ASSERT_TRUE(prints(first + second));

    figures.memoryPercent.reset();
    service->readoutDidUpdate();
    EXPECT_TRUE(prints(first + second + "{\"text\":\"RAM 42%\"," + rest + "}\n"));
}

TEST_F(KestroReadoutTest, KeepsTheProtocolOfI3barWhileKestroIsNotRunning) {
    start({QStringLiteral("--i3bar")});

    EXPECT_TRUE(prints("{\"version\":1}\n[\n[],\n"));
}

TEST_F(KestroReadoutTest, IgnoresChangesFromOtherPrograms) {
    startKestro();
    start({});
    ASSERT_TRUE(prints("RAM 42%\n"));

    QDBusConnection forger = bus.connect();
    const QStringList names = forger.interface()->registeredServiceNames().value();
    for (const QString& name : names) {
        if (!name.startsWith(QLatin1Char(':'))) {
            continue;
        }
        QDBusMessage forged = QDBusMessage::createTargetedSignal(name, QStringLiteral("/kestro/Readout"),
                                                                 QStringLiteral("org.freedesktop.DBus.Properties"),
                                                                 QStringLiteral("PropertiesChanged"));
        forged.setArguments({QStringLiteral("kestro.Readout"),
                             QVariantMap{{QStringLiteral("Text"), QStringLiteral("forged")}}, QStringList()});
        forger.send(forged);
    }
    forger.interface()->isServiceRegistered(QStringLiteral("kestro.Readout"));
    show(QStringLiteral("RAM 43%"));

    EXPECT_TRUE(prints("RAM 42%\nRAM 43%\n"));
}

TEST_F(KestroReadoutTest, EndsQuietlyWithItsReader) {
    startKestro();

    EXPECT_EQ(runUntilTheReaderEnds(QStringLiteral("head -n 1"), {}), 0);

    EXPECT_EQ(output, "RAM 42%\n");
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(KestroReadoutTest, PrintsOnce) {
    startKestro();

    EXPECT_EQ(run({QStringLiteral("--once")}), 0);
    EXPECT_EQ(output, "RAM 42%\n");
    EXPECT_EQ(run({QStringLiteral("--once"), QStringLiteral("--genmon")}), 0);
    EXPECT_TRUE(output.startsWith("<txt>RAM 42%</txt>"));
}

TEST_F(KestroReadoutTest, PrintsOneEmptyLineWithoutKestro) {
    EXPECT_EQ(run({QStringLiteral("--once")}), 1);
    EXPECT_EQ(output, "\n");
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(KestroReadoutTest, EndsOnceTheLineDiffersFromTheOneGiven) {
    startKestro();
    EXPECT_EQ(run({QStringLiteral("--after"), QStringLiteral("RAM 41%")}), 0);
    EXPECT_EQ(output, "RAM 42%\n");

    output.clear();
    const QProcess& process = start({QStringLiteral("--after"), QStringLiteral("RAM 42%")});
    service->readoutDidUpdate();
    show(QStringLiteral("RAM 43%"));
    ASSERT_TRUE(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
    EXPECT_EQ(output, "RAM 43%\n");
}

TEST_F(KestroReadoutTest, IsTheHostAsLongAsItRuns) {
    startKestro();
    QProcess& process = start({QStringLiteral("--host"), QStringLiteral("--silent")});
    ASSERT_TRUE(waitUntil([&] { return hosted == std::vector<bool>{true}; }));

    process.kill();

    EXPECT_TRUE(waitUntil([&] { return hosted == (std::vector<bool>{true, false}); }));
    EXPECT_TRUE(output.isEmpty());
}

TEST_F(KestroReadoutTest, EndsWithAReaderThatItNeverWritesTo) {
    startKestro();

    EXPECT_EQ(runUntilTheReaderEnds(QStringLiteral("true"), {QStringLiteral("--silent")}), 0);
}

TEST_F(KestroReadoutTest, SendsRequests) {
    startKestro();

    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("popover")}), 0);
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("dashboard")}), 0);
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("settings")}), 0);
    EXPECT_EQ(run({QStringLiteral("--toggle-keep-awake")}), 0);

    EXPECT_TRUE(waitUntil([&] { return popovers == 1 && dashboards == 1 && settings == 1 && keepAwakes == 1; }));
}

TEST_F(KestroReadoutTest, ReportsARequestThatFails) {
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("dashboard")}), 1);
    EXPECT_TRUE(errors.startsWith("kestro-readout: "));

    bus.kill();
    EXPECT_EQ(run({QStringLiteral("--show"), QStringLiteral("dashboard")}), 1);
    EXPECT_TRUE(errors.startsWith("kestro-readout: "));
}

TEST_F(KestroReadoutTest, ExplainsItself) {
    EXPECT_EQ(run({QStringLiteral("--help")}), 0);
    EXPECT_TRUE(output.startsWith("Usage: kestro-readout"));
    EXPECT_EQ(run({QStringLiteral("--version")}), 0);
    EXPECT_TRUE(output.startsWith("kestro-readout "));
    EXPECT_EQ(run({QStringLiteral("--unknown")}), 2);
    EXPECT_TRUE(errors.contains("--unknown"));
    EXPECT_TRUE(output.isEmpty());
}

}  // namespace
}  // namespace kestro
