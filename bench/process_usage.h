#pragma once

#include <QElapsedTimer>

#include <fmt/format.h>
#include <sys/types.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <system_error>
#include <utility>

namespace kestro::bench {

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
        for (const auto& task : std::filesystem::directory_iterator(fmt::format("/proc/{}/task", pid_), ignored)) {
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
inline double memoryOf(qint64 pid, const std::string& line) {
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

}  // namespace kestro::bench
