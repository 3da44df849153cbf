// Measures Kestro as a whole process, on the current display and session bus: time from start to the registered
// status item, then the cost while idle and with each surface open. Acts as the panel: owns the watcher's name and
// claims to be a host.

#include "bench/paired.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <fmt/format.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using kestro::bench::printHeader;
using kestro::bench::printRow;

/// A status notifier watcher that accepts every item and stores only the fact of a registration.
class Watcher : public QDBusVirtualObject {
public:
    /// Called with the item's bus name, which contains its process identifier.
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

/// CPU time and wake-ups of a process over a period. Update it about once a second: of a thread that ends between
/// two updates, only the CPU time is counted.
class UsageMeter {
public:
    explicit UsageMeter(qint64 pid) : pid_(pid) {
        clock_getcpuclockid(static_cast<pid_t>(pid), &clock_);
        before_ = processorNanoseconds();
        switches_ = switchesByThread();
        elapsed_.start();
    }

    void update() {
        auto now = switchesByThread();
        for (const auto& [thread, count] : now) {
            const auto known = switches_.find(thread);
            wakeUps_ += count - (known != switches_.end() ? known->second : 0);
        }
        switches_ = std::move(now);
    }

    /// Percent of one core.
    double processorPercent() const { return (processorNanoseconds() - before_) / 1e9 / seconds() * 100; }
    /// Voluntary context switches of all threads.
    double wakeUpsPerSecond() const { return wakeUps_ / seconds(); }

private:
    double seconds() const { return static_cast<double>(elapsed_.nsecsElapsed()) / 1e9; }

    double processorNanoseconds() const {
        timespec time{};
        clock_gettime(clock_, &time);
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
    }

    std::map<std::string, double> switchesByThread() const {
        std::map<std::string, double> found;
        std::error_code ignored;
        for (const auto& task : fs::directory_iterator(fmt::format("/proc/{}/task", pid_), ignored)) {
            std::ifstream status(task.path() / "status");
            for (std::string word; status >> word;) {
                if (word == "voluntary_ctxt_switches:") {
                    status >> found[task.path().filename()];
                }
            }
        }
        return found;
    }

    qint64 pid_;
    clockid_t clock_{};
    double before_ = 0;
    double wakeUps_ = 0;
    std::map<std::string, double> switches_;
    QElapsedTimer elapsed_;
};

/// One line of the process's smaps_rollup, in megabytes.
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
    Program(QString path, Watcher& watcher) : path_(std::move(path)), watcher_(watcher) {
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
    Watcher& watcher_;
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
    runFor(5s);
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

    Watcher watcher;
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
