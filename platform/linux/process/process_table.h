#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace kestro {

/// The processes of this machine, listed as the process-status tool would, straight from /proc.
///
/// CPU use is measured between two listings at least 0.4 s apart, as `top` does; a process missing from the
/// earlier one is measured from its start. When there is none, or only one that is more than five seconds old,
/// such as after the windows were closed, it is taken anew and the call blocks for 0.4 s. Any thread; concurrent
/// listings are serialised. Lists nothing if /proc cannot be read.
///
/// The command of a process is read again only after the kernel's name of it has changed, as it does when the
/// process executes another program.
class ProcessTable {
public:
    enum class Order { processor, residentMemory };

    /// The clocks of the machine, in seconds, and a pause.
    struct Time {
        std::function<double()> sinceBoot;         ///< with suspended time: start times refer to it
        std::function<double()> awake;             ///< without suspended time: processes run in it
        std::function<void(double seconds)> wait;  ///< blocks
    };

    /// `root` is the directory that holds proc/.
    explicit ProcessTable(const std::string& root = "/", Time time = ofThisMachine());
    ~ProcessTable();
    ProcessTable(const ProcessTable&) = delete;
    ProcessTable& operator=(const ProcessTable&) = delete;

    /// A header line, then at most `rowLimit` lines of pid, CPU percent of one core, memory percent, resident KiB
    /// and command, greatest first. The command is the executable's path if readable, otherwise the argument that
    /// fits the kernel's name (the first, or the path of a script after its interpreter), otherwise that name:
    /// always valid UTF-8, without control characters, never empty. Only paths contain slashes; those in a kernel
    /// name become U+2215.
    std::string list(Order order);

    /// Several times the program's longest process list.
    static constexpr std::size_t rowLimit = 100;

    /// CLOCK_BOOTTIME and CLOCK_MONOTONIC.
    static Time ofThisMachine();

private:
    struct Process {
        std::int32_t pid = 0;
        std::uint64_t startTicks = 0;
        std::uint64_t processorTicks = 0;
        std::uint64_t residentPages = 0;
        double processorPercent = 0;
        std::string name;
    };

    /// All processes at one point in time, sorted by process id.
    struct Listing {
        std::vector<Process> processes;
        std::size_t count = 0;  // entries in use; the others keep their storage
        double time = -1;       // awake; -1: none yet
    };

    struct KnownCommand {
        std::uint64_t startTicks = 0;
        std::string name;
        std::string text;
    };

    void scan();
    void scanAfterAPause();
    bool read(const char* directoryName, Process& process) const;
    void chooseBaseline();
    void measure();
    const std::string& command(const Process& process);
    std::string readCommand(const Process& process) const;
    std::string fittingArgument(const Process& process) const;

    const int procDescriptor_;
    const Time time_;
    std::mutex mutex_;
    Listing newest_;
    Listing next_;      // becomes the baseline of later listings once it is old enough
    Listing baseline_;  // the baseline of the newest one
    std::vector<std::uint32_t> ranking_;
    std::unordered_map<std::int32_t, KnownCommand> commands_;  // by process id
};

}  // namespace kestro
