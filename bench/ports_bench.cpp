// Measures the kernel-facing ports and the readers on them against the floor: the same files read raw.

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

#include "bench/paired.h"
#include "platform/linux/child_process.h"
#include "platform/linux/process_table.h"

namespace kestro::bench {
namespace {

using namespace std::chrono_literals;

/// Processes that only wait, so that a listing has a known length at the least; ended by this object.
class Crowd {
public:
    explicit Crowd(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                while (true) {
                    pause();
                }
            }
            if (child > 0) {
                members_.push_back(child);
            }
        }
    }
    ~Crowd() {
        for (const pid_t member : members_) {
            kill(member, SIGKILL);
        }
        for (const pid_t member : members_) {
            waitpid(member, nullptr, 0);
        }
    }

private:
    std::vector<pid_t> members_;
};

std::size_t bareScan() {
    std::size_t processes = 0;
    std::array<char, 2048> text;
    DIR* directory = opendir("/proc");
    while (const dirent* entry = readdir(directory)) {
        if (entry->d_name[0] < '1' || entry->d_name[0] > '9') {
            continue;
        }
        const int file = openat(dirfd(directory), (std::string(entry->d_name) + "/stat").c_str(), O_RDONLY);
        if (file >= 0) {
            processes += read(file, text.data(), text.size()) > 0 ? 1 : 0;
            close(file);
        }
    }
    closedir(directory);
    return processes;
}

double childrenNanoseconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto nanoseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_usec) * 1e3;
    };
    return nanoseconds(usage.ru_utime) + nanoseconds(usage.ru_stime);
}

/// Processor time of running the process tool as a child, ours and its own.
double toolNanoseconds() {
    const double ours = threadNanoseconds();
    const double theirs = childrenNanoseconds();
    if (!runChild("/bin/ps", {"-A", "-o", "pid,%cpu,%mem,rss,comm", "--sort=-pcpu"}, 4 << 20, 10s)) {
        return 0;
    }
    return threadNanoseconds() - ours + childrenNanoseconds() - theirs;
}

void measureProcesses() {
    const Crowd crowd(300 - std::min<std::size_t>(bareScan(), 299));
    ProcessTable table;
    const auto list = [&] { table.list(ProcessTable::Order::processor); };
    const auto name = fmt::format("process listing, {} processes", bareScan());
    printPair(name + ", hot", measure(list, bareScan, 200), "1.5 x");
    printPair(name + ", paced", measure(list, bareScan, 20, 250ms), "1.5 x");

    std::vector<double> ratios;
    std::vector<double> listings;
    std::vector<double> tools;
    for (int round = 0; round < 15; ++round) {
        tools.push_back(toolNanoseconds());
        listings.push_back(cost(list));
        ratios.push_back(tools.back() / listings.back());
    }
    printRow("the process tool as a child, to our listing", fmt::format("{:.1f} us", median(tools) / 1000),
             fmt::format("{:.1f} us", median(listings) / 1000), fmt::format("{:.1f}", median(ratios)), ">= 5 x");
}

}  // namespace
}  // namespace kestro::bench

int main() {
    kestro::bench::printHeader("Kernel-facing ports");
    kestro::bench::measureProcesses();
}
