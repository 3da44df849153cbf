// Measures Kestro as a whole process, on the current display and session bus: time from start to the registered
// status item, then the cost while idle and with each surface open. Acts as the panel: owns the watcher's name and
// claims to be a host.

#include "bench/accepting_watcher.h"
#include "bench/paired.h"
#include "bench/process_usage.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <QVariantMap>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using kestro::bench::AcceptingWatcher;
using kestro::bench::memoryOf;
using kestro::bench::printHeader;
using kestro::bench::printRow;
using kestro::bench::UsageMeter;

void runFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void notify(const char* member, const char* tab = nullptr) {
    auto signal = QDBusMessage::createSignal(QStringLiteral("/kestro/notify"), QStringLiteral("kestro.notify"),
                                             QLatin1String(member));
    signal << (tab != nullptr ? QVariantMap{{QStringLiteral("tab"), QLatin1String(tab)}} : QVariantMap());
    QDBusConnection::sessionBus().send(signal);
}

/// Limits for one state, as shown in the table; empty: no separate limit.
struct Budget {
    std::string processor;
    std::string wakeUps;
    std::string resident;
    std::string privateDirty;
};

void measureState(qint64 pid, const std::string& name, std::chrono::seconds time, const Budget& budget) {
    UsageMeter meter(pid);
    for (auto second = 0s; second < time; ++second) {
        runFor(1s);
        meter.update();
    }
    printRow(name + ": processor", fmt::format("{:.3f} %", meter.processorPercent()), "", "", budget.processor);
    printRow(name + ": wake-ups", fmt::format("{:.2f} /s", meter.wakeUpsPerSecond()), "", "", budget.wakeUps);
    printRow(name + ": resident", fmt::format("{:.1f} MB", memoryOf(pid, "Rss:")), "", "", budget.resident);
    printRow(name + ": private dirty", fmt::format("{:.1f} MB", memoryOf(pid, "Private_Dirty:")), "", "",
             budget.privateDirty);
}

/// Kestro itself, with the preferences of one measurement.
class Program {
public:
    Program(QString path, AcceptingWatcher& watcher) : path_(std::move(path)), watcher_(watcher) {
        process_.setStandardInputFile(QProcess::nullDevice());
    }

    /// Stops the running process and starts a new one. Returns the milliseconds until it registered an item;
    /// nullopt if it did not.
    std::optional<double> start(const QByteArray& preferences = "{}") {
        end();
        const fs::path folder = fs::path(qgetenv("XDG_CONFIG_HOME").toStdString()) / "kestro";
        fs::create_directories(folder);
        std::ofstream(folder / "preferences.json") << preferences.toStdString();
        QEventLoop registered;
        // A message from the previous process may still be queued.
        watcher_.onRegister = [&](const QString& item) {
            if (item.contains(QStringLiteral("-%1-").arg(process_.processId()))) {
                registered.quit();
            }
        };
        QTimer::singleShot(20s, &registered, [&] { registered.exit(1); });
        QElapsedTimer elapsed;
        elapsed.start();
        process_.start(path_, {});
        const bool isRegistered = registered.exec() == 0;
        watcher_.onRegister = nullptr;
        return isRegistered ? std::optional(static_cast<double>(elapsed.nsecsElapsed()) / 1e6) : std::nullopt;
    }

    void end() {
        if (process_.state() != QProcess::NotRunning) {
            process_.terminate();
            process_.waitForFinished(10000);
        }
    }

    qint64 pid() const { return process_.processId(); }

private:
    QString path_;
    AcceptingWatcher& watcher_;
    QProcess process_;
};

/// Presses a key in the focused window.
void press(const char* key) {
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), QString::fromLatin1(key)});
}

const Budget idleBudget{"0.05 %", "2 /s", "", ""};

const QByteArray everyModule = R"json({"kestro.activeMenubarModules": {"json": ["appIcon", "memory", "cpuUsage",
    "cpuClusters", "thermal", "fanSpeed", "fanProfile", "powerMode", "network", "battery", "diskSpace",
    "keepAwake"]}})json";

/// The figures of the default readout.
const QStringList shownFigures{QStringLiteral("MemoryPercent"), QStringLiteral("FanSpeedsRpm")};

/// A call of the interface for panels.
QDBusMessage readoutCall(const char* method) {
    const QString name = QStringLiteral("kestro.Readout");
    return QDBusMessage::createMethodCall(name, QStringLiteral("/kestro/Readout"), name, QLatin1String(method));
}

bool measureStart(Program& kestro) {
    kestro.start();  // warms the disk cache
    std::vector<double> milliseconds;
    for (int round = 0; round < 7; ++round) {
        const auto time = kestro.start();
        if (!time) {
            return false;
        }
        milliseconds.push_back(*time);
    }
    printRow("start to the registered item", fmt::format("{:.0f} ms", kestro::bench::median(milliseconds)), "", "",
             "150 ms");
    return true;
}

/// Measures a surface, and the idle state afterwards.
void measureSurface(const Program& kestro, const std::string& name, const std::function<void()>& open,
                    const std::function<void()>& close, std::chrono::seconds time, const Budget& budget) {
    runFor(2s);
    open();
    runFor(3s);
    measureState(kestro.pid(), name + " open", time, budget);
    close();
    // By then the hidden window has been destroyed, once, to free its memory.
    runFor(15s);
    measureState(kestro.pid(), name + " closed again", time, idleBudget);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc < 2 || !qEnvironmentVariableIsSet("XDG_CONFIG_HOME")) {
        fmt::print(stderr,
                   "process_bench KESTRO [IDLE_SECONDS], with an XDG_CONFIG_HOME that may be written to\n");
        return 2;
    }
    const std::chrono::seconds idleTime(argc > 2 ? std::max(1, std::atoi(argv[2])) : 60);
    const auto openTime = std::min<std::chrono::seconds>(idleTime, 20s);

    AcceptingWatcher watcher;
    auto bus = QDBusConnection::sessionBus();
    bus.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), &watcher);
    if (!bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"))) {
        fmt::print(stderr, "process_bench: needs a session bus without a panel\n");
        return 1;
    }

    printHeader("Whole process");
    Program kestro(QString::fromLocal8Bit(argv[1]), watcher);
    if (!measureStart(kestro)) {
        fmt::print(stderr, "process_bench: no item was registered\n");
        return 1;
    }
    const auto closeWindow = [] { press("ctrl+w"); };

    runFor(5s);
    measureState(kestro.pid(), fmt::format("idle, readout only, {} s", idleTime.count()), idleTime,
                 {"0.05 %", "2 /s", "30 MB", "5 MB"});
    QDBusMessage follow = readoutCall("Follow");
    follow << shownFigures;
    bus.call(follow);
    measureState(kestro.pid(), fmt::format("idle, followed by one program, {} s", idleTime.count()), idleTime,
                 {"0.05 %", "2 /s", "30 MB", "5 MB"});
    bus.call(readoutCall("Unfollow"));
    const auto togglePopover = [] { notify("togglePopover"); };
    measureSurface(kestro, "popover", togglePopover, togglePopover, openTime, {"1 %", "", "45 MB", ""});

    kestro.start(everyModule);
    runFor(5s);
    measureState(kestro.pid(), fmt::format("idle, every module in the readout, {} s", idleTime.count()), idleTime,
                 {"0.05 %", "2 /s", "30 MB", "5 MB"});

    kestro.start();
    measureSurface(kestro, "settings", [] { notify("showSettings", "Cooling & Fans"); }, closeWindow, openTime,
                   {"1 %", "", "65 MB", ""});

    kestro.start(R"({"kestro.processCountLimit": 10})");
    measureSurface(kestro, "dashboard", [] { notify("showDashboard"); }, closeWindow, openTime,
                   {"", "", "60 MB", ""});

    kestro.start(
        R"json({"kestro.processCountLimit": 10, "kestro.pollingProfile": {"json": "High Precision (1.0s / 0.5s)"}})json");
    runFor(2s);
    notify("showDashboard");
    runFor(3s);
    measureState(kestro.pid(), "dashboard open, high precision", openTime, {"2 %", "", "60 MB", ""});
    kestro.end();
    return 0;
}
