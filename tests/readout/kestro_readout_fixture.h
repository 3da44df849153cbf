#pragma once

#include "shell/linux/readout/bus_readout_service.h"
#include "tests/support/event_waiting.h"
#include "tests/support/places.h"
#include "tests/support/private_bus.h"

#include <QFile>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace kestro::test {

/// The program on a private bus, with the service that a running Kestro offers there.
class KestroReadoutFixture : public testing::Test {
protected:
    KestroReadoutFixture() {
        readout.text = QStringLiteral("RAM 42%");
        readout.widestText = QStringLiteral("RAM 100%");
        readout.toolTip = QStringLiteral("Kestro: RAM 42%");
    }

    ~KestroReadoutFixture() override {
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

}  // namespace kestro::test
