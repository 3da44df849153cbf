#include "tests/drills/drill_desktop.h"
#include "tests/drills/drills.h"
#include "tests/drills/troubled_session.h"

#include <QFile>

#include <fmt/format.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;

constexpr QSize twoScreens(2560, 800);
const QRect leftScreen(0, 0, 1280, 800);

constexpr int restartsBetweenEvents = 20;
constexpr int simultaneousStarts = 40;
constexpr int startsOfShortForm = 8;
constexpr auto patience = 30s;
constexpr auto hour = 3600s;
constexpr auto week = 7 * 24 * hour;

const QString dashboard = QStringLiteral("Kestro Studio Dashboard");
const QString settings = QStringLiteral("Kestro Preferences");
const QString activate = QStringLiteral("Activate Indefinitely");

class SessionsDrill {
public:
    SessionsDrill(DrillRandom& random, DrillReport& report) : random_(random), report_(report) {}

    void run(const DrillLength& length) {
        startsAtOnce_ = length.isShort() ? startsOfShortForm : simultaneousStarts;
        monitor("left", "1280/300x800/200+0+0", "screen");
        launch();
        for (; length.allowsAfter(restarts_) && report_.failures.empty(); ++restarts_) {
            if (restarts_ % restartsBetweenEvents == 0) {
                event();
            }
            restartPanel();
        }
        report_.require(logOut(), "does not end at logout");
        report_.done = fmt::format(
            "{} restarts of the panel, {} suspends and clock changes, {} screens unplugged, {} simultaneous "
            "starts, "
            "{} logouts",
            restarts_, suspends_, unplugged_, starts_, logouts_);
        report_.worst = fmt::format("back in the panel after {} ms", slowest_ / 1ms);
    }

private:
    void launch() { desktop_.launch(troubles_.variables()); }

    void event() {
        suspend();
        unplug();
        startManyBesideOne();
        report_.require(logOut(), "does not end at logout");
        startManyAtOnce();
    }

    void restartPanel() {
        desktop_.session.killPanel();
        DrillDesktop::pause(random_.upTo(200ms));
        desktop_.session.startPanel();
        const auto begin = std::chrono::steady_clock::now();
        report_.require(desktop_.awaitItem(), fmt::format("restart {}: not in the panel", restarts_));
        slowest_ = std::max<std::chrono::nanoseconds>(slowest_, std::chrono::steady_clock::now() - begin);
    }

    void suspend() {
        for (const auto time : {std::chrono::seconds(hour), std::chrono::seconds(week)}) {
            report_.require(desktop_.choose(QStringLiteral("15 Minutes")), "no entry for keep-awake");
            report_.require(waitUntil([this] { return !offers(activate); }, patience),
                            "keep-awake does not start");
            troubles_.suspend(time);
            ++suspends_;
            report_.require(waitUntil([this] { return offers(activate); }, patience),
                            "keep-awake outlasts its time while suspended");
        }
        for (const auto shift : {-std::chrono::seconds(week), std::chrono::seconds(hour)}) {
            troubles_.setWall(shift);
            ++suspends_;
            report_.require(figuresChange(), "the figures stop when the clock is set");
        }
    }

    bool offers(const QString& title) const {
        const StatusItemClient client(desktop_.session);
        return client.menu(desktop_.mainItem()).find(title) != nullptr;
    }

    /// Whether the main thread still works on a timer: it uses the processor again and again without being asked
    /// for anything. True also where that cannot be measured.
    bool figuresChange() const {
        for (int times = 0; times < 3; ++times) {
            const auto before = desktop_.mainThreadTime();
            DrillDesktop::pause(500ms);
            if (before != before.zero() &&
                !waitUntil([&] { return desktop_.mainThreadTime() > before; }, patience)) {
                return false;
            }
        }
        return true;
    }

    void monitor(const char* name, const char* geometry, const char* output) const {
        desktop_.session.output(QStringLiteral("xrandr"),
                                {QStringLiteral("--setmonitor"), QString::fromLatin1(name),
                                 QString::fromLatin1(geometry), QString::fromLatin1(output)});
    }

    void unplug() {
        monitor("right", "1280/300x800/200+1280+0", "none");
        report_.require(desktop_.command("dashboard-shrink") && desktop_.command("settings"), "no answer");
        for (const QString& title : {dashboard, settings}) {
            // The opening motion may still move it back.
            report_.require(waitUntil([&] { return move(title, QPoint(1500, 100)); }, patience),
                            "a window does not move to the second screen");
        }
        desktop_.session.output(QStringLiteral("xrandr"),
                                {QStringLiteral("--delmonitor"), QStringLiteral("right")});
        ++unplugged_;
        for (const QString& title : {dashboard, settings}) {
            report_.require(waitUntil([&] { return leftScreen.contains(frame(title)); }, patience),
                            "a window stays on the screen that was unplugged");
        }
        desktop_.command("hide");
    }

    QRect frame(const QString& title) const {
        for (const DesktopWindow& window : desktop_.session.windows()) {
            if (window.title == title) {
                return window.frame;
            }
        }
        return {};
    }

    bool move(const QString& title, QPoint position) const {
        for (const DesktopWindow& window : desktop_.session.windows()) {
            if (window.title == title) {
                desktop_.session.output(QStringLiteral("xdotool"),
                                        {QStringLiteral("windowmove"), window.identifier,
                                         QString::number(position.x()), QString::number(position.y())});
                return frame(title).x() == position.x();
            }
        }
        return false;
    }

    void startManyBesideOne() {
        QProcess* const first = desktop_.kestro;
        const auto others = startMany();
        report_.require(waitUntil([&] { return running(others).empty(); }, patience),
                        "a second Kestro keeps running");
        requireCleanExits(others);
        desktop_.kestro = first;
        report_.require(desktop_.isRunning() && desktop_.settle(), "the first Kestro is gone");
    }

    void startManyAtOnce() {
        const auto all = startMany();
        const bool isOneLeft = waitUntil([&] { return running(all).size() == 1; }, patience);
        report_.require(isOneLeft, fmt::format("{} of {} simultaneous starts keep running", running(all).size(),
                                               startsAtOnce_));
        requireCleanExits(all);
        if (!running(all).empty()) {
            desktop_.kestro = running(all).front();
            report_.require(desktop_.awaitItem(), "the only Kestro has no item");
        }
    }

    std::vector<QProcess*> startMany() {
        std::vector<QProcess*> started;
        for (int count = 0; count < startsAtOnce_; ++count) {
            started.push_back(&desktop_.start(troubles_.variables()));
        }
        starts_ += startsAtOnce_;
        return started;
    }

    static std::vector<QProcess*> running(const std::vector<QProcess*>& processes) {
        std::vector<QProcess*> found;
        std::ranges::copy_if(processes, std::back_inserter(found),
                             [](const QProcess* process) { return process->state() == QProcess::Running; });
        return found;
    }

    void requireCleanExits(const std::vector<QProcess*>& processes) {
        for (const QProcess* process : processes) {
            report_.require(process->state() == QProcess::Running ||
                                (process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0),
                            "a second Kestro fails");
        }
    }

    /// A change right before the end is stored.
    bool logOut() {
        ++logouts_;
        fan_ = 1 - fan_;
        return desktop_.command(fan_ == 0 ? "select-fan-0" : "select-fan-1") && desktop_.settle() &&
               desktop_.end(SIGTERM) && desktop_.kestro->exitCode() == 0 && hasStored(desktop_, fan_);
    }

public:
    static bool hasStored(const DrillDesktop& desktop, int fan) {
        QFile file(desktop.preferencesFile());
        return file.open(QIODevice::ReadOnly) &&
               file.readAll().contains(QByteArray("\"kestro.selectedFanIndex\": ") + QByteArray::number(fan));
    }

private:
    DrillRandom& random_;
    DrillReport& report_;
    DrillDesktop desktop_{DesktopPanel::mate, twoScreens};
    TroubledSession troubles_{desktop_.session};
    int startsAtOnce_ = 0;
    int restarts_ = 0;
    int suspends_ = 0;
    int unplugged_ = 0;
    int starts_ = 0;
    int logouts_ = 0;
    int fan_ = 0;
    std::chrono::nanoseconds slowest_{};
};

/// The display dies while windows open, or, after a pause, with every window open. The program ends, and what
/// changed last is stored.
void loseTheDisplay(DrillReport& report, std::chrono::milliseconds pause) {
    DrillDesktop desktop;
    desktop.launch();
    report.require(desktop.command("select-fan-1") && desktop.settle() && desktop.command("dashboard") &&
                       desktop.command("settings") && desktop.command("popover"),
                   "no answer before the death of the display");
    DrillDesktop::pause(pause);
    desktop.session.killDisplay();
    report.require(waitUntil([&] { return !desktop.isRunning(); }, patience), "outlives its display");
    report.require(desktop.kestro->exitStatus() == QProcess::NormalExit,
                   "crashes with its display: " + desktop.kestro->readAll().toStdString());
    report.require(SessionsDrill::hasStored(desktop, 1), "loses a change with its display");
}

}  // namespace

DrillReport sessionsDrill(const DrillLength& length, DrillRandom& random) {
    DrillReport report;
    SessionsDrill(random, report).run(length);
    const int displays = length.isShort() ? 1 : 30;
    for (int count = 0; count < displays; ++count) {
        loseTheDisplay(report, random.upTo(100ms));
    }
    loseTheDisplay(report, 2s);
    report.done += fmt::format(", {} displays killed", displays + 1);
    return report;
}

}  // namespace kestro::drills
