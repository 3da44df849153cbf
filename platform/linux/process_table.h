#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace kestro {

/// The processes of this machine as the process-status tool would list them, read straight from /proc.
///
/// Processor use is measured between two listings at least 0.4 s apart, as `top` does; a process that was not
/// there at the earlier one counts from its start. Any thread; listings wait for each other. A /proc that cannot
/// be read lists nothing.
class ProcessTable {
public:
    enum class Order { processor, residentMemory };

    /// Seconds since boot, suspended time included.
    using UptimeSource = std::function<double()>;

    /// `root` is the directory that holds proc/.
    explicit ProcessTable(const std::string& root = "/", UptimeSource uptime = bootClock);
    ~ProcessTable();
    ProcessTable(const ProcessTable&) = delete;
    ProcessTable& operator=(const ProcessTable&) = delete;

    /// A header line, then at most `rowLimit` lines of pid, CPU percent of one core, memory percent, resident
    /// KiB and command, the greatest first. The command is the executable's path where it can be read and the
    /// kernel's name otherwise, always valid UTF-8 without control characters and never empty. Only a path holds
    /// slashes; those of a kernel's name become U+2215.
    std::string list(Order order);

    /// Several times what the longest list of the program shows.
    static constexpr std::size_t rowLimit = 100;

    /// CLOCK_BOOTTIME.
    static double bootClock();

private:
    struct Process {
        std::int32_t pid = 0;
        std::uint64_t startTicks = 0;
        std::uint64_t processorTicks = 0;
        std::uint64_t residentPages = 0;
        double processorPercent = 0;
        std::string name;
    };

    /// Every process at one time, by process id.
    struct Listing {
        std::vector<Process> processes;
        std::size_t count = 0;  // entries in use; the others keep their storage
        double time = -1;       // of the uptime source; -1: there is none
    };

    void scan();
    bool read(const char* directoryName, Process& process) const;
    void chooseBaseline();
    void measure();
    std::string command(const Process& process) const;

    const int procDescriptor_;
    const UptimeSource uptime_;
    std::mutex mutex_;
    Listing newest_;
    Listing next_;      // what later listings are measured against once it is old enough
    Listing baseline_;  // what the newest one is measured against
    std::vector<std::uint32_t> ranking_;
};

}  // namespace kestro
