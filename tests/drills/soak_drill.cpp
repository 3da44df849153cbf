#include "tests/drills/drill_desktop.h"
#include "tests/drills/drills.h"

#include <QDir>
#include <QFile>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <map>
#include <string>
#include <vector>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto warmUp = std::chrono::seconds(5min);

/// Windows give their memory back ten seconds after the last one has closed.
constexpr auto release = 13s;
constexpr auto longestMeasurement = std::chrono::seconds(30);
constexpr auto shortestMeasurement = std::chrono::seconds(3);
constexpr auto longestPause = 300ms;

constexpr std::int64_t mostGrowth = 3 * 1024;  // KB
constexpr double mostMoreWakeUps = 1.2;
constexpr int measurementsAfter = 4;
constexpr int shortRounds = 3;
constexpr double wakeUpsOfChance = 2;  // per second: other programs cause some

constexpr std::array words{"popover",
                           "dashboard",
                           "settings",
                           "settings-sensors",
                           "settings-dashboard",
                           "settings-menubar",
                           "settings-keepawake",
                           "settings-cooling",
                           "settings-power",
                           "dashboard-fullscreen",
                           "dashboard-resize",
                           "dashboard-shrink",
                           "hide"};
constexpr std::array keys{"Escape", "ctrl+w", "Tab", "shift+Tab", "ctrl+d", "ctrl+comma", "ctrl+p", "F11", "Down"};

/// The cost of the program while nothing but its strip is shown.
struct Cost {
    std::int64_t anonymousKilobytes = 0;  ///< resident; pages of files come and go with what has just run
    std::int64_t descriptors = 0;
    std::int64_t threads = 0;
    double wakeUpsPerSecond = 0;
};

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::int64_t statusValue(const QString& path, const QByteArray& name) {
    for (const QByteArray& line : contents(path).split('\n')) {
        if (line.startsWith(name + ':')) {
            return line.mid(name.size() + 1).simplified().split(' ').value(0).toLongLong();
        }
    }
    return 0;
}

class SoakDrill {
public:
    explicit SoakDrill(DrillRandom& random) : random_(random), desktop_(DrillDesktop::withoutHost()) {
        desktop_->session.writePreferences(
            R"json({"kestro.pollingProfile": {"json": "High Precision (1.0s / 0.5s)"}})json");
    }

    DrillReport run(std::chrono::seconds time) {
        const auto measurement = std::clamp(time / 12, shortestMeasurement, longestMeasurement);
        const auto actions = std::max<std::chrono::seconds>(time - 2 * (release + measurement), 4s);
        const auto warm = std::min<std::chrono::seconds>(warmUp, actions / 2);
        desktop_->launch();
        openEachOnce();
        act(warm);
        auto before = cost(measurement);
        act(actions - warm);
        auto after = costAfter(before, measurement);
        // A short warm-up leaves some caches empty; a leak grows in every round. Growth that comes and goes is
        // only found by a drill of full length.
        const int rounds = warm < warmUp ? shortRounds : 1;
        for (int round = 1; round < rounds && !growth(before, after).empty(); ++round) {
            before = after;
            act(actions - warm);
            after = costAfter(before, measurement);
        }
        judge(before, after);
        report_.require(desktop_->end(SIGTERM) && desktop_->kestro->exitCode() == 0, "does not end");
        report_.done = fmt::format("{} words, keys and clicks in {} s", actions_, time.count());
        return std::move(report_);
    }

private:
    void openEachOnce() {
        for (const char* word : words) {
            desktop_->command(word);
            DrillDesktop::pause(longestPause);
        }
    }

    void act(std::chrono::seconds time) {
        const auto end = Clock::now() + time;
        while (Clock::now() < end && desktop_->isRunning()) {
            step();
            ++actions_;
            DrillDesktop::pause(random_.upTo(longestPause));
        }
        report_.require(desktop_->isRunning(), "ended: " + desktop_->kestro->readAll().toStdString());
    }

    void step() {
        switch (random_.below(4)) {
            case 0:
                desktop_->session.key(QString::fromLatin1(random_.oneOf(keys)));
                break;
            case 1:
                clickStrip();
                break;
            default:
                report_.require(desktop_->command(random_.oneOf(words)), "a word is not consumed");
                break;
        }
    }

    /// The left button shows the popover, the right one a menu, which a key closes.
    void clickStrip() {
        const auto strip = desktop_->session.strip();
        if (!strip) {
            return;  // under a window in full screen
        }
        const bool isLeft = random_.onceIn(2);
        desktop_->session.click(strip->frame.center(), isLeft ? 1 : 3);
        if (!isLeft) {
            DrillDesktop::pause(random_.upTo(longestPause));
            desktop_->session.key(QStringLiteral("Escape"));
        }
    }

    void closeEverything() {
        const bool areClosed = waitUntil(
            [this] {
                const auto windows = desktop_->session.windows();
                if (windows.size() <= 1 && desktop_->session.strip()) {
                    return true;
                }
                desktop_->command("hide");
                desktop_->session.key(QStringLiteral("Escape"));
                desktop_->session.key(QStringLiteral("ctrl+w"));
                DrillDesktop::pause(longestPause);
                return !desktop_->isRunning();
            },
            60s);
        report_.require(areClosed, "windows do not close");
    }

    Cost cost(std::chrono::seconds measurement) {
        closeEverything();
        DrillDesktop::pause(release);
        const auto before = contextSwitches();
        DrillDesktop::pause(measurement);
        const auto switches = switchesBetween(before, contextSwitches());
        const QString process = QStringLiteral("/proc/%1").arg(desktop_->pid());
        const QString status = process + QStringLiteral("/status");
        return {statusValue(status, "RssAnon"),
                QDir(process + QStringLiteral("/fd"))
                    .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                    .size(),
                statusValue(status, "Threads"),
                static_cast<double>(switches) / static_cast<double>(measurement.count())};
    }

    /// Voluntary context switches of a thread, by its identifier: each is a wake-up.
    using Switches = std::map<QString, std::int64_t>;

    Switches contextSwitches() const {
        const QDir tasks(QStringLiteral("/proc/%1/task").arg(desktop_->pid()));
        Switches switches;
        for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            const QString status = tasks.filePath(task) + QStringLiteral("/status");
            // Without one it has just ended.
            if (const auto count = statusValue(status, "voluntary_ctxt_switches"); count > 0) {
                switches[task] = count;
            }
        }
        return switches;
    }

    /// Of the threads that still exist at the end: one that ends takes its count with it.
    static std::int64_t switchesBetween(const Switches& before, const Switches& after) {
        std::int64_t sum = 0;
        for (const auto& [task, count] : after) {
            const auto found = before.find(task);
            sum += found == before.end() ? count : count - found->second;
        }
        return sum;
    }

    /// What has grown for good shows in every measurement; what other programs cause shows in some.
    Cost costAfter(const Cost& before, std::chrono::seconds measurement) {
        Cost after = cost(measurement);
        for (int count = 1; count < measurementsAfter && !growth(before, after).empty(); ++count) {
            after = cost(measurement);
        }
        return after;
    }

    static std::vector<std::string> growth(const Cost& before, const Cost& after) {
        std::vector<std::string> grown;
#ifndef KESTRO_SANITIZED
        // A sanitizer keeps freed memory.
        if (after.anonymousKilobytes > before.anonymousKilobytes + mostGrowth) {
            grown.emplace_back("memory grows");
        }
#endif
        if (after.descriptors > before.descriptors) {
            grown.emplace_back("descriptors grow");
        }
        if (after.threads > before.threads) {
            grown.emplace_back("threads grow");
        }
        if (after.wakeUpsPerSecond > before.wakeUpsPerSecond * mostMoreWakeUps + wakeUpsOfChance) {
            grown.emplace_back("wake-ups grow");
        }
        return grown;
    }

    void judge(const Cost& before, const Cost& after) {
        report_.worst = fmt::format(
            "{} to {} KB of anonymous memory, {} to {} descriptors, {} to {} threads, {:.1f} to {:.1f} "
            "wake-ups per second",
            before.anonymousKilobytes, after.anonymousKilobytes, before.descriptors, after.descriptors,
            before.threads, after.threads, before.wakeUpsPerSecond, after.wakeUpsPerSecond);
        for (const std::string& what : growth(before, after)) {
            report_.require(false, what);
        }
    }

    DrillRandom& random_;
    std::unique_ptr<DrillDesktop> desktop_;
    DrillReport report_;
    int actions_ = 0;
};

}  // namespace

DrillReport soakDrill(const DrillLength& length, DrillRandom& random) {
    return SoakDrill(random).run(length.time());
}

}  // namespace kestro::drills
