#include "tests/drills/drill_desktop.h"
#include "tests/drills/drills.h"
#include "tests/drills/obstacles.h"
#include "tests/drills/troubled_session.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <string>

namespace kestro::drills {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// The program's answers do not wait for a file; a busy machine adds to this.
constexpr auto longestLatency = 500ms;
constexpr auto longestStart = 5s;

/// A change is stored so soon after the obstacle has gone; the program retries with the next change.
constexpr auto storedWithin = 5s;
constexpr auto slowDisk = 400ms;
constexpr int rewrites = 100;
constexpr auto longestTrouble = 700ms;

const QString fanKey = QStringLiteral("kestro.selectedFanIndex");

mode_t kindOf(const fs::path& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

class FilesDrill {
public:
    explicit FilesDrill(DrillRandom& random) : random_(random) {}

    DrillReport run(const DrillLength& length) {
        launch();
        int rounds = 0;
        for (; length.allowsAfter(rounds); ++rounds) {
            round(rounds);
            watch("after it");
            if (!desktop_.isRunning()) {
                launch();
            }
        }
        report_.require(desktop_.end(SIGTERM) && desktop_.kestro->exitCode() == 0, "does not end");
        report_.done = fmt::format("{} obstacles of {} kinds in place of command files and preferences", rounds,
                                   kinds_.size());
        report_.worst = fmt::format("answered after {} ms, started in {} ms, stored after {} ms", slowest_ / 1ms,
                                    slowestStart_ / 1ms, slowestStore_ / 1ms);
        return std::move(report_);
    }

private:
    void round(int number) {
        // Every kind in turn, so that each length covers as many as possible.
        static constexpr int places = 6;
        switch (number % places) {
            case 0:
                obstructCommands(desktop_.commandFile().toStdString());
                break;
            case 1:
                obstructCommands(desktop_.session.path(QStringLiteral("runtime/kestro.cmd")).toStdString());
                break;
            case 2:
                obstructPreferencesAtStart();
                break;
            case 3:
                obstructPreferencesWhileRunning();
                break;
            case 4:
                failDisk();
                break;
            default:
                race();
                break;
        }
    }

    void launch() {
        const auto begin = std::chrono::steady_clock::now();
        desktop_.launch(troubles_.variables());
        const auto took = std::chrono::steady_clock::now() - begin;
        slowestStart_ = std::max<std::chrono::nanoseconds>(slowestStart_, took);
        report_.require(!judgesTimes() || took <= longestStart, now_ + ": a slow start");
    }

    /// Names what happens now in later failures.
    void note(std::string what) {
        now_ = std::move(what);
        kinds_.insert(now_);
    }

    void watch(const char* when) {
        const auto latency = desktop_.isRunning() ? desktop_.latency() : std::nullopt;
        if (!latency) {
            report_.require(false, fmt::format("{}: no answer {}", now_, when));
            return;
        }
        slowest_ = std::max<std::chrono::nanoseconds>(slowest_, *latency);
        report_.require(!judgesTimes() || *latency <= longestLatency,
                        fmt::format("{}: answered after {} ms {}", now_, *latency / 1ms, when));
    }

    void obstructCommands(const fs::path& path) {
        const Obstacle& obstacle = nextObstacle();
        note(fmt::format("{} in place of {}", obstacle.name, path.filename().string()));
        if (!place(obstacle, path)) {
            return;
        }
        watch("with it");
        report_.require(desktop_.settle(), now_ + ": no answer");
        clear(path);
        report_.require(waitUntil([&] { return kindOf(path) == S_IFREG; }), now_ + ": not created again");
        const QString name = QString::fromStdString(path);
        report_.require(DrillDesktop::writeText(name, "no command"), now_ + ": not writable");
        report_.require(waitUntil([&] { return QFile(name).size() == 0; }),
                        now_ + ": the next word is not consumed");
        report_.require(desktop_.session.windows().empty(), now_ + ": obeyed");
    }

    void obstructPreferencesAtStart() {
        const Obstacle& obstacle = nextObstacle();
        note(fmt::format("{} in place of the preferences at the start", obstacle.name));
        desktop_.end(SIGTERM);
        const fs::path path = desktop_.preferencesFile().toStdString();
        if (!place(obstacle, path)) {
            launch();
            return;
        }
        const mode_t kind = kindOf(path);
        launch();
        changeFan();
        report_.require(desktop_.end(SIGTERM) && desktop_.kestro->exitCode() == 0, now_ + ": does not end");
        report_.require(kindOf(path) == kind, now_ + ": replaced");
        clear(path);
        launch();
        requireNextChangeIsStored();
        removeDamaged();
    }

    void obstructPreferencesWhileRunning() {
        const Obstacle& obstacle = nextObstacle();
        note(fmt::format("{} in place of the preferences", obstacle.name));
        const fs::path path = desktop_.preferencesFile().toStdString();
        if (!place(obstacle, path)) {
            return;
        }
        changeFan();
        DrillDesktop::pause(random_.upTo(longestTrouble));
        watch("with it");
        clear(path);
        requireNextChangeIsStored();
        removeDamaged();
    }

    void failDisk() {
        static constexpr std::pair<DiskTrouble, const char*> troubles[] = {
            {DiskTrouble::full, "a full disk"},
            {DiskTrouble::readOnly, "a read-only disk"},
            {DiskTrouble::broken, "a broken disk"},
            {DiskTrouble::slow, "a slow disk"}};
        const auto& [trouble, name] = troubles[troubleIndex_++ % std::size(troubles)];
        note(name);
        requireNextChangeIsStored();
        const auto before = storedFan();
        troubles_.setDisk(trouble, slowDisk);
        changeFan();
        for (int look = 0; look < 3; ++look) {
            DrillDesktop::pause(random_.upTo(longestTrouble / 3));
            watch("with it");
            const auto stored = storedFan();
            report_.require(stored && (trouble == DiskTrouble::slow || stored == before),
                            now_ + ": damaged the preferences");
        }
        troubles_.setDisk(DiskTrouble::none);
        requireNextChangeIsStored();
    }

    /// Changes of the file faster than the program reads it.
    void race() {
        note("many rewrites of the command file");
        const fs::path path = desktop_.commandFile().toStdString();
        for (int count = 0; count < rewrites; ++count) {
            switch (random_.below(4)) {
                case 0:
                    place(nextObstacle(), path);
                    break;
                case 1:
                    clear(path);
                    break;
                default:
                    desktop_.write("no command");
                    break;
            }
        }
        watch("after many rewrites");
        clear(path);
        report_.require(waitUntil([&] { return kindOf(path) == S_IFREG; }), now_ + ": not created again");
        report_.require(desktop_.command("no command"), now_ + ": the next word is not consumed");
        report_.require(desktop_.session.windows().empty(), now_ + ": obeyed");
    }

    const Obstacle& nextObstacle() {
        const auto obstacles = allObstacles();
        return obstacles[random_.below(static_cast<std::uint32_t>(obstacles.size()))];
    }

    void changeFan() {
        fan_ = 1 - fan_;
        report_.require(desktop_.command(fan_ == 0 ? "select-fan-0" : "select-fan-1") && desktop_.settle(),
                        now_ + ": no answer");
    }

    /// nullopt: the file is missing or does not parse.
    std::optional<int> storedFan() const {
        QFile file(desktop_.preferencesFile());
        if (!file.open(QIODevice::ReadOnly)) {
            return std::nullopt;
        }
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
        return document.isObject() ? std::optional(document[fanKey].toInt(-1)) : std::nullopt;
    }

    void requireNextChangeIsStored() {
        changeFan();
        const auto begin = std::chrono::steady_clock::now();
        report_.require(waitUntil([this] { return storedFan() == fan_; }),
                        now_ + ": the next change is not stored");
        const std::chrono::nanoseconds time = std::chrono::steady_clock::now() - begin;
        slowestStore_ = std::max(slowestStore_, time);
        report_.require(!judgesTimes() || time <= storedWithin, now_ + ": the next change is stored late");
    }

    /// Only nine damaged files are kept, and then nothing more is stored.
    void removeDamaged() const {
        for (const QString& file : desktop_.session.files()) {
            if (file.contains(QLatin1StringView(".damaged"))) {
                QFile::remove(desktop_.session.path(file));
            }
        }
    }

    DrillRandom& random_;
    DrillDesktop desktop_;
    TroubledSession troubles_{desktop_.session};
    DrillReport report_;
    std::string now_ = "the first start";
    std::set<std::string> kinds_;
    int fan_ = 0;
    std::size_t troubleIndex_ = 0;
    std::chrono::nanoseconds slowest_{};
    std::chrono::nanoseconds slowestStart_{};
    std::chrono::nanoseconds slowestStore_{};
};

}  // namespace

DrillReport filesDrill(const DrillLength& length, DrillRandom& random) {
    return FilesDrill(random).run(length);
}

}  // namespace kestro::drills
