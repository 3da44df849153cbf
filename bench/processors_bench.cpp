// Measures the processor reading and its start on a machine with 480 logical processors, replayed from files.

#include "bench/paired.h"
#include "core/telemetry/cpu_reader.h"
#include "platform/linux/machine/linux_clock.h"
#include "platform/linux/machine/linux_mach_host.h"
#include "platform/linux/machine/linux_system_control.h"
#include "platform/posix/descriptor.h"
#include "tests/support/allocation_counter.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace kestro::bench {
namespace {

namespace fs = std::filesystem;

constexpr int processors = 480;

/// A file system with the files of such a machine; deleted when this object is destroyed.
class LargeMachine {
public:
    LargeMachine() {
        std::string pattern = (fs::temp_directory_path() / "kestro-bench-XXXXXX").string();
        root_ = ::mkdtemp(pattern.data());
        std::string stat = "cpu  1 2 3 4 5 6 7 8 9 10\n";
        for (int cpu = 0; cpu < processors; ++cpu) {
            stat += fmt::format("cpu{} 123456789 1234 12345678 1234567890 123456 0 1234567 0 0 0\n", cpu);
            write(fmt::format("sys/devices/system/cpu/cpu{}/acpi_cppc/highest_perf", cpu), "255\n");
            write(fmt::format("sys/devices/system/cpu/cpu{}/cpufreq/cpuinfo_max_freq", cpu), "3700000\n");
        }
        statLength_ = stat.size();
        // Thousands of interrupts follow.
        write("proc/stat", stat + "intr 1" + std::string(40'000, '0') + "\nbtime 1700000000\n");
        write("sys/devices/system/cpu/present", fmt::format("0-{}\n", processors - 1));
    }
    ~LargeMachine() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    LargeMachine(const LargeMachine&) = delete;
    LargeMachine& operator=(const LargeMachine&) = delete;

    const std::string& root() const { return root_; }

    /// Of the lines of the processors.
    std::size_t statLength() const { return statLength_; }

private:
    void write(const std::string& path, const std::string& text) const {
        const auto file = fs::path(root_) / path;
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    std::string root_;
    std::size_t statLength_ = 0;
};

/// Each file opened and read once.
void readOnce(const std::vector<std::string>& files) {
    std::vector<char> buffer(64 << 10);
    for (const auto& path : files) {
        const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        [[maybe_unused]] const auto length = ::read(file.get(), buffer.data(), buffer.size());
    }
}

void measureStart(const LinuxClock& clock, const LargeMachine& machine) {
    std::vector<std::string> files{machine.root() + "/proc/stat"};
    for (const auto& entry : fs::recursive_directory_iterator(machine.root() + "/sys")) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path().string());
        }
    }
    const auto start = [&] {
        LinuxMachHost host(clock, machine.root());
        LinuxSystemControl control(clock, machine.root());
        CPUReader reader(host, control);
    };
    // The order of the cores and their number are read by two ports, each from all files.
    const auto floor = [&] {
        readOnce(files);
        readOnce(files);
    };
    printPair(fmt::format("start, {} processors", processors), measure(start, floor, 20), "2 x");
}

void measureReading(const LinuxClock& clock, const LargeMachine& machine) {
    LinuxMachHost host(clock, machine.root());
    LinuxSystemControl control(clock, machine.root());
    CPUReader reader(host, control);
    CPUTelemetry record;
    const auto reading = [&] { reader.readCPU(record); };
    const Descriptor stat(::open((machine.root() + "/proc/stat").c_str(), O_RDONLY | O_CLOEXEC));
    std::vector<char> buffer(machine.statLength());
    const auto floor = [&] {
        [[maybe_unused]] const auto length = ::pread(stat.get(), buffer.data(), buffer.size(), 0);
    };
    // The kernel takes far longer to write such a file than a disk to return it, so a ratio would say nothing.
    const auto pair = measure(reading, floor, 500);
    printRow(fmt::format("reading, {} processors", processors), fmt::format("{:.1f} us", pair.figure / 1000),
             fmt::format("{:.1f} us", pair.floor / 1000), "", "200 us");

    const auto before = test::allocationsOfThisThread();
    reading();
    printRow("reading: heap allocations", std::to_string(test::allocationsOfThisThread() - before), "", "", "0");
}

}  // namespace
}  // namespace kestro::bench

int main() {
    kestro::bench::printHeader("A machine with many processors");
    const kestro::LinuxClock clock;
    const kestro::bench::LargeMachine machine;
    kestro::bench::measureStart(clock, machine);
    kestro::bench::measureReading(clock, machine);
}
