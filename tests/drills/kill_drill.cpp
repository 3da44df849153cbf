#include "tests/drills/drill_desktop.h"
#include "tests/drills/drills.h"
#include "tests/drills/sleep_locks.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariantMap>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <vector>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// A change is on the disk after this time, plus what a busy machine adds to the write itself.
constexpr auto promise = 1s;
constexpr auto busyMachine = 250ms;

constexpr int mostChanges = 12;
constexpr auto longestPause = 400ms;
constexpr auto longestWait = 1500ms;
constexpr auto longestStart = 600ms;

const QString tabKey = QStringLiteral("kestro.selectedSettingsTab");
const QString fanKey = QStringLiteral("kestro.selectedFanIndex");
const QString linkKey = QStringLiteral("kestro.isFansLinked");
const QString pinKey = QStringLiteral("kestro.isPinned");

const std::array tabs{QStringLiteral("Sensors"), QStringLiteral("Dashboard"), QStringLiteral("Menu Bar"),
                      QStringLiteral("Keep-Awake"), QStringLiteral("Cooling & Fans")};

/// The settings after a change, and when the program was known to have made it.
struct Version {
    QJsonObject settings;
    Clock::time_point made;
};

/// One life of the program after another on the same desktop.
class KillDrill {
public:
    explicit KillDrill(DrillRandom& random) : random_(random) {
        desktop_.session.writePreferences(
            R"({"kestro.selectedSettingsTab": {"json": "Sensors"}, "kestro.selectedFanIndex": 0,
                "kestro.isFansLinked": true, "kestro.isPinned": false})");
    }

    DrillReport run(const DrillLength& length) {
        int kills = 0;
        for (; length.allowsAfter(kills); ++kills) {
            live(kills);
        }
        desktop_.launch();
        requireNoStaleFiles(kills);
        desktop_.end(SIGTERM);
        report_.done = fmt::format("{} kills, {} of them while starting, {} changes, {} locks", kills, earlyKills_,
                                   changes_, locks_.granted());
        report_.worst = fmt::format("lost a change {} ms old", oldestLoss_.count());
        return std::move(report_);
    }

private:
    void live(int kill) {
        versions_ = {{stored(kill), Clock::now()}};
        desktop_.start();
        if (kill == 0 || random_.onceIn(8)) {
            ++earlyKills_;
            DrillDesktop::pause(random_.upTo(longestStart));
        } else if (!desktop_.awaitItem()) {
            report_.require(false, fmt::format("before kill {}: does not start", kill));
            return;
        } else {
            requireNoStaleFiles(kill);
            work(kill);
        }
        const auto killed = Clock::now();
        desktop_.end(SIGKILL);
        requireRecentSettings(kill, killed);
        report_.require(locks_.areReleased(), fmt::format("kill {}: a lock against sleep stays", kill));
    }

    void work(int kill) {
        const auto count = random_.below(mostChanges);
        for (std::uint32_t change = 0; change <= count; ++change) {
            DrillDesktop::pause(random_.upTo(longestPause));
            if (!makeChange() || !desktop_.settle()) {
                report_.require(false, fmt::format("kill {}: the program does not respond", kill));
                return;
            }
            ++changes_;
            versions_.back().made = Clock::now();
        }
        if (random_.onceIn(4)) {
            desktop_.choose(QStringLiteral("Activate Indefinitely"));
        }
        if (random_.onceIn(2)) {
            DrillDesktop::pause(random_.upTo(longestWait));
        } else {
            makeChange();
            versions_.back().made = Clock::now();
        }
    }

    /// Appends the version that the change leads to. False: the change could not be requested.
    bool makeChange() {
        QJsonObject next = versions_.back().settings;
        bool isRequested = true;
        switch (random_.below(4)) {
            case 0: {
                const QString& tab = random_.oneOf(tabs);
                next[tabKey] = QJsonObject{{QStringLiteral("json"), tab}};
                desktop_.notify(QStringLiteral("showSettings"), {QVariantMap{{QStringLiteral("tab"), tab}}});
                break;
            }
            case 1: {
                const int fan = static_cast<int>(random_.below(2));
                next[fanKey] = fan;
                isRequested = desktop_.command(fan == 0 ? "select-fan-0" : "select-fan-1");
                break;
            }
            case 2:
                next[linkKey] = !next[linkKey].toBool();
                isRequested = desktop_.command("toggle-fan-link");
                break;
            default: {
                const bool isPinned = next[pinKey].toBool();
                next[pinKey] = !isPinned;
                isRequested = desktop_.choose(isPinned ? QStringLiteral("Unpin Window")
                                                       : QStringLiteral("Pin Window on Top"));
                break;
            }
        }
        versions_.push_back({next, Clock::now()});
        return isRequested;
    }

    /// The four settings in the file.
    QJsonObject stored(int kill) {
        QFile file(desktop_.preferencesFile());
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
        report_.require(isOpen && document.isObject(), fmt::format("kill {}: unreadable preferences", kill));
        QJsonObject settings;
        for (const QString& key : {tabKey, fanKey, linkKey, pinKey}) {
            settings[key] = document[key];
        }
        return settings;
    }

    void requireRecentSettings(int kill, Clock::time_point killed) {
        const QJsonObject found = stored(kill);
        const auto match = std::find_if(versions_.rbegin(), versions_.rend(),
                                        [&](const Version& v) { return v.settings == found; });
        if (match == versions_.rend()) {
            report_.require(false, fmt::format("kill {}: the file holds what never was: {}", kill,
                                               QJsonDocument(found).toJson(QJsonDocument::Compact).toStdString()));
            return;
        }
        if (match == versions_.rbegin()) {
            return;
        }
        // The version after the stored one is the oldest that was lost.
        const auto age = std::chrono::duration_cast<std::chrono::milliseconds>(killed - (match - 1)->made);
        oldestLoss_ = std::max(oldestLoss_, age);
        report_.require(!judgesTimes() || age <= promise + busyMachine,
                        fmt::format("kill {}: lost a change {} ms old", kill, age.count()));
    }

    void requireNoStaleFiles(int kill) {
        for (const QString& file : desktop_.ownFiles()) {
            const bool isKnown = file == QLatin1StringView("config/kestro/preferences.json") ||
                                 file == QLatin1StringView("runtime/.kestro_cmd") ||
                                 file == QLatin1StringView("runtime/kestro.cmd");
            report_.require(isKnown, fmt::format("after kill {}: left {}", kill, file.toStdString()));
        }
    }

    DrillRandom& random_;
    DrillDesktop desktop_;
    SleepLocks locks_{desktop_.session};
    DrillReport report_;
    std::vector<Version> versions_;
    int earlyKills_ = 0;
    int changes_ = 0;
    std::chrono::milliseconds oldestLoss_{};
};

}  // namespace

DrillReport killDrill(const DrillLength& length, DrillRandom& random) {
    return KillDrill(random).run(length);
}

}  // namespace kestro::drills
