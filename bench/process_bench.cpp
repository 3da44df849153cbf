// Measures Kestro as a whole process, on the display and session bus that it finds: time from start to the
// registered status item, then cost while idle and with each surface open. Stands in for a panel: it owns the
// watcher's name and calls itself a host.

#include <fmt/format.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "bench/paired.h"

namespace {

namespace fs = std::filesystem;
using kestro::bench::printHeader;
using kestro::bench::printRow;

/// A status notifier watcher that hosts everything and remembers nothing but that somebody registered.
class Watcher : public QDBusVirtualObject {
public:
    /// Told the item's bus name, which carries the identifier of its process.
    std::function<void(const QString& item)> onRegister;

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QLatin1String("RegisterStatusNotifierItem")) {
            connection.send(message.createReply());
            if (onRegister) {
                onRegister(message.arguments().value(0).toString());
            }
            return true;
        }
        if (message.member() == QLatin1String("Get") && message.arguments().size() == 2) {
            const auto name = message.arguments().at(1).toString();
            connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value(name)))));
            return true;
        }
        if (message.member() == QLatin1String("GetAll")) {
            QVariantMap all;
            for (const char* name :
                 {"IsStatusNotifierHostRegistered", "ProtocolVersion", "RegisteredStatusNotifierItems"}) {
                all.insert(QLatin1String(name), value(QLatin1String(name)));
            }
            connection.send(message.createReply(all));
            return true;
        }
        return false;
    }

private:
    static QVariant value(const QString& property) {
        if (property == QLatin1String("IsStatusNotifierHostRegistered")) {
            return true;
        }
        if (property == QLatin1String("ProtocolVersion")) {
            return 0;
        }
        return QStringList();
    }
};

struct Usage {
    double processorNanoseconds = 0;  ///< of all threads, from schedstat
    double wakeUps = 0;               ///< voluntary context switches of all threads
};

Usage usageOf(qint64 pid) {
    Usage usage;
    std::error_code ignored;
    for (const auto& task : fs::directory_iterator(fmt::format("/proc/{}/task", pid), ignored)) {
        double nanoseconds = 0;
        std::ifstream(task.path() / "schedstat") >> nanoseconds;
        usage.processorNanoseconds += nanoseconds;
        std::ifstream status(task.path() / "status");
        for (std::string word; status >> word;) {
            if (word == "voluntary_ctxt_switches:") {
                double switches = 0;
                status >> switches;
                usage.wakeUps += switches;
            }
        }
    }
    return usage;
}

/// A line of the process's smaps_rollup in megabytes.
double memoryOf(qint64 pid, const std::string& line) {
    std::ifstream rollup(fmt::format("/proc/{}/smaps_rollup", pid));
    for (std::string word; rollup >> word;) {
        if (word == line) {
            double kibibytes = 0;
            rollup >> kibibytes;
            return kibibytes / 1024;
        }
    }
    return 0;
}

void runFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void notify(const char* member) {
    auto signal = QDBusMessage::createSignal(QStringLiteral("/kestro/notify"), QStringLiteral("kestro.notify"),
                                             QLatin1String(member));
    signal << QVariantMap();
    QDBusConnection::sessionBus().send(signal);
}

/// What a state may cost at most, as shown in the table; empty: no bound of its own.
struct Budget {
    std::string processor;
    std::string wakeUps;
    std::string resident;
    std::string privateDirty;
};

void measureState(qint64 pid, const std::string& name, std::chrono::seconds time, const Budget& budget) {
    const auto before = usageOf(pid);
    QElapsedTimer elapsed;
    elapsed.start();
    runFor(time);
    const auto after = usageOf(pid);
    const double seconds = static_cast<double>(elapsed.nsecsElapsed()) / 1e9;
    const double percent = (after.processorNanoseconds - before.processorNanoseconds) / 1e9 / seconds * 100;
    printRow(name + ": processor", fmt::format("{:.3f} %", percent), "", "", budget.processor);
    printRow(name + ": wake-ups", fmt::format("{:.2f} /s", (after.wakeUps - before.wakeUps) / seconds), "", "",
             budget.wakeUps);
    printRow(name + ": resident", fmt::format("{:.1f} MB", memoryOf(pid, "Rss:")), "", "", budget.resident);
    printRow(name + ": private dirty", fmt::format("{:.1f} MB", memoryOf(pid, "Private_Dirty:")), "", "",
             budget.privateDirty);
}

/// Starts the program again and again; the last one is left running. False: no item was registered.
bool measureStart(QProcess& kestro, const QString& program, Watcher& watcher) {
    std::vector<double> milliseconds;
    for (int round = 0; round < 6; ++round) {
        if (kestro.state() != QProcess::NotRunning) {
            kestro.terminate();
            kestro.waitForFinished(10000);
        }
        QEventLoop registered;
        // A message of the process before can still be waiting.
        watcher.onRegister = [&](const QString& item) {
            if (item.contains(QStringLiteral("-%1-").arg(kestro.processId()))) {
                registered.quit();
            }
        };
        QTimer::singleShot(std::chrono::seconds(20), &registered, [&] { registered.exit(1); });
        QElapsedTimer elapsed;
        elapsed.start();
        kestro.start(program, {});
        if (registered.exec() != 0) {
            return false;
        }
        if (round > 0) {  // the first start reads the program from the disk
            milliseconds.push_back(static_cast<double>(elapsed.nsecsElapsed()) / 1e6);
        }
    }
    watcher.onRegister = nullptr;
    printRow("start to the registered item", fmt::format("{:.0f} ms", kestro::bench::median(milliseconds)), "", "",
             "150 ms");
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc < 2) {
        fmt::print(stderr, "process_bench KESTRO [IDLE_SECONDS]\n");
        return 2;
    }
    const std::chrono::seconds idleTime(argc > 2 ? std::max(1, std::atoi(argv[2])) : 60);
    const auto openTime = std::min(idleTime, std::chrono::seconds(20));

    Watcher watcher;
    auto bus = QDBusConnection::sessionBus();
    bus.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), &watcher);
    if (!bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"))) {
        fmt::print(stderr, "process_bench: needs a session bus without a panel\n");
        return 1;
    }

    printHeader("Whole process");
    QProcess kestro;
    kestro.setStandardInputFile(QProcess::nullDevice());
    if (!measureStart(kestro, QString::fromLocal8Bit(argv[1]), watcher)) {
        fmt::print(stderr, "process_bench: no item was registered\n");
        return 1;
    }

    const auto pid = kestro.processId();
    runFor(std::chrono::seconds(5));
    measureState(pid, fmt::format("idle, readout only, {} s", idleTime.count()), idleTime,
                 {"0.05 %", "2 /s", "30 MB", "5 MB"});
    notify("togglePopover");
    runFor(std::chrono::seconds(3));
    measureState(pid, "popover open", openTime, {"1 %", "", "45 MB", ""});
    notify("togglePopover");
    runFor(std::chrono::seconds(5));
    measureState(pid, "popover closed again", openTime, {"0.05 %", "2 /s", "", ""});

    kestro.terminate();
    kestro.waitForFinished(10000);
    return kestro.exitCode();
}
