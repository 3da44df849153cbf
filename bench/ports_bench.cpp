// Measures the kernel-facing ports and their readers against a floor: raw reads of the same files.

#include "bench/paired.h"
#include "core/engine/telemetry_engine.h"
#include "core/platform/platform.h"
#include "core/readout/readout_sources.h"
#include "core/settings/user_settings.h"
#include "core/telemetry/cpu_reader.h"
#include "core/telemetry/disk_reader.h"
#include "core/telemetry/memory_reader.h"
#include "core/telemetry/network_reader.h"
#include "core/telemetry/power_reader.h"
#include "core/telemetry/process_reader.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/linux/battery/linux_power_sources.h"
#include "platform/linux/machine/linux_clock.h"
#include "platform/linux/machine/linux_file_system_statistics.h"
#include "platform/linux/machine/linux_mach_host.h"
#include "platform/linux/machine/linux_process_info_service.h"
#include "platform/linux/machine/linux_system_control.h"
#include "platform/linux/network/linux_network_interfaces.h"
#include "platform/linux/process/process_table.h"
#include "platform/linux/sensors/linux_hid_event_system.h"
#include "platform/linux/sensors/linux_smc_service.h"
#include "platform/posix/child_process.h"
#include "platform/posix/descriptor.h"
#include "platform/simulated/simulated_mac.h"
#include "tests/support/allocation_counter.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace kestro::bench {
namespace {

using namespace std::chrono_literals;

/// Idle processes that give a listing a known minimum length; ended by this object.
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

/// CPU time of running the process tool as a child: ours plus the child's.
double toolNanoseconds() {
    const double ours = threadNanoseconds();
    const double theirs = childrenNanoseconds();
    if (!runChild(
            {.executable = "/bin/ps", .arguments = {"-A", "-o", "pid,%cpu,%mem,rss,comm", "--sort=-pcpu"}})) {
        return 0;
    }
    return threadNanoseconds() - ours + childrenNanoseconds() - theirs;
}

void measureProcesses(std::size_t count, int rounds) {
    const Crowd crowd(count - std::min(bareScan(), count - 1));
    ProcessTable table;
    const auto list = [&] { table.list(ProcessTable::Order::processor); };
    const auto name = fmt::format("process listing, {} processes", bareScan());
    printPair(name + ", hot", measure(list, bareScan, rounds), "1.25 x");
    printPair(name + ", paced", measure(list, bareScan, 20, 250ms), "1.25 x");
}

void measureProcessTool() {
    const Crowd crowd(300 - std::min<std::size_t>(bareScan(), 299));
    ProcessTable table;
    const auto list = [&] { table.list(ProcessTable::Order::processor); };
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

/// The engine on this machine's kernel-facing ports, with a run loop driven by this program.
struct Machine {
    LinuxClock clock;
    LinuxMachHost machHost{clock};
    LinuxSystemControl systemControl{clock};
    LinuxProcessInfoService processInfo{clock};
    LinuxFileSystemStatistics fileSystem;
    LinuxNetworkInterfaces networkInterfaces;
    LinuxPowerSources powerSources{clock};
    LinuxSMCService smcService{clock};
    LinuxHIDEventSystem hidEventSystem{clock};
    SimulatedMac session;
    Platform platform{clock,
                      session.runLoop,
                      machHost,
                      systemControl,
                      processInfo,
                      fileSystem,
                      networkInterfaces,
                      powerSources,
                      smcService,
                      hidEventSystem,
                      session.commandRunner,
                      session.scriptRunner,
                      session.powerAssertions,
                      session.powerEvents,
                      session.powerModeService,
                      session.userDefaults,
                      session.notifications,
                      session.fileEvents};
    UserSettings settings{session.userDefaults};
    CPUReader cpu{machHost, systemControl};
    MemoryReader memory{machHost, systemControl, processInfo};
    DiskReader disk{fileSystem};
    NetworkReader network{networkInterfaces, clock};
    PowerReader power{powerSources};
    SMCReader smc{smcService};
    ThermalReader thermal{hidEventSystem, processInfo};
    ProcessReader processes{session.commandRunner};
    TelemetryEngine engine{platform, settings, {cpu, memory, disk, network, power, smc, thermal, processes}};

    Machine() {
        settings.showTopProcesses.set(false);
        settings.menubarDisplayMode.set(MenubarDisplayMode::combined);  // so that a light tick also reads the CPU
    }

    /// Fires the engine's timer once while nothing is visible.
    void lightTick() { session.advance(2s); }
};

std::set<std::string> openKernelFiles() {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        const auto target = std::filesystem::read_symlink(entry.path(), ignored).string();
        if ((target.starts_with("/proc/") || target.starts_with("/sys/")) &&
            std::filesystem::is_regular_file(target)) {
            files.insert(target);
        }
    }
    return files;
}

/// Only reads the files that the ports keep open, each from its start into one shared buffer.
class RawRead {
public:
    explicit RawRead(const std::set<std::string>& files) : buffer_(64 << 10) {
        for (const auto& file : files) {
            files_.emplace_back(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        }
    }
    void operator()() {
        for (const auto& file : files_) {
            // Some files temporarily have no data; the attempt is part of the floor.
            [[maybe_unused]] const auto length = pread(file.get(), buffer_.data(), buffer_.size(), 0);
        }
    }
    std::size_t count() const { return files_.size(); }

private:
    std::vector<Descriptor> files_;
    std::vector<char> buffer_;
};

void measureSamples() {
    Machine machine;
    machine.lightTick();
    machine.lightTick();
    RawRead light(openKernelFiles());
    const auto lightTick = [&] { machine.lightTick(); };
    const auto lightFloor = [&] { light(); };
    printPair(fmt::format("light tick, {} files, hot", light.count()), measure(lightTick, lightFloor, 2000),
              "1.5 x");
    printPair("light tick, paced", measure(lightTick, lightFloor, 30, 500ms), "1.5 x");

    const auto tickForAMinute = [&machine] {
        for (int tick = 0; tick < 30; ++tick) {
            machine.lightTick();
        }
    };
    const auto printAllocations = [&tickForAMinute](const char* name) {
        const auto before = test::allocationsOfThisThread();
        tickForAMinute();
        printRow(name, std::to_string(test::allocationsOfThisThread() - before), "", "", "0");
    };
    printAllocations("light ticks of a minute: heap allocations");
    machine.engine.setReadoutSources(readoutSources(allCases<MenubarModuleType>()));
    tickForAMinute();  // past the first reading of every source
    printAllocations("the same with every module but the battery");

    machine.engine.sampleFull();
    RawRead full(openKernelFiles());
    const auto fullSample = [&] { machine.engine.sampleFull(); };
    const auto fullFloor = [&] {
        full();
        struct statvfs status {};
        statvfs("/", &status);
    };
    printPair(fmt::format("full sample, {} files and statvfs, hot", full.count()),
              measure(fullSample, fullFloor, 2000), "1.5 x");
    printPair("full sample, paced", measure(fullSample, fullFloor, 30, 500ms), "1.5 x");
}

}  // namespace
}  // namespace kestro::bench

int main() {
    kestro::bench::printHeader("Kernel-facing ports");
    kestro::bench::measureSamples();
    kestro::bench::measureProcesses(300, 200);
    kestro::bench::measureProcesses(3'000, 40);
    kestro::bench::measureProcessTool();
}
