// Measures the fans and temperatures of a machine with many sensor chips against a floor: raw reads of the same
// files. The machine is a tree of files: reading them costs less than reading the kernel's, so the ratios are
// higher than on a real machine.

#include "bench/paired.h"
#include "core/telemetry/smc_reader.h"
#include "core/telemetry/thermal_reader.h"
#include "platform/linux/machine/linux_clock.h"
#include "platform/linux/machine/linux_process_info_service.h"
#include "platform/linux/sensors/linux_hid_event_system.h"
#include "platform/linux/sensors/linux_smc_service.h"
#include "platform/linux/sensors/sleeping_devices.h"
#include "platform/posix/descriptor.h"
#include "tests/support/allocation_counter.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kestro::bench {
namespace {

namespace fs = std::filesystem;

/// A machine with 30 chips: two processors, a mainboard, two graphics cards, drives, network cards and thermal
/// zones. Deleted by this object.
class Machine {
public:
    Machine() {
        auto pattern = (fs::temp_directory_path() / "kestro-bench-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
        addChip("coretemp", 33, 0);
        addChip("coretemp", 33, 0);
        addChip("nct6798", 10, 7);
        addChip("amdgpu", 3, 1);
        addChip("amdgpu", 3, 1);
        addChip("corsaircpro", 4, 6);
        for (int drive = 0; drive < 12; ++drive) {
            addChip(drive < 4 ? "nvme" : "drivetemp", 2, 0);
        }
        for (int card = 0; card < 6; ++card) {
            addChip("mlx5", 1, 0);
        }
        while (chips_ < 30) {
            addChip("acpitz", 1, 0);
        }
    }
    ~Machine() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    const std::string& root() const { return root_; }
    int chips() const { return chips_; }

private:
    void addChip(const std::string& name, int temperatures, int fans) {
        const auto device = fmt::format("/sys/devices/platform/chip.{}", chips_);
        const auto node = fmt::format("{}/hwmon/hwmon{}", device, chips_);
        write(node + "/name", name);
        const bool canSleep = name == "amdgpu";
        write(device + "/power/control", "auto");
        write(device + "/power/runtime_status", canSleep ? "active" : "unsupported");
        write(device + "/power/autosuspend_delay_ms", canSleep ? "5000" : "");
        for (int input = 1; input <= temperatures; ++input) {
            write(fmt::format("{}/temp{}_input", node, input), std::to_string(40'000 + 250 * input));
            write(fmt::format("{}/temp{}_label", node, input), fmt::format("Input {}", input));
        }
        for (int fan = 1; fan <= fans; ++fan) {
            write(fmt::format("{}/fan{}_input", node, fan), std::to_string(800 + 10 * fan));
            write(fmt::format("{}/fan{}_target", node, fan), "900");
            write(fmt::format("{}/fan{}_max", node, fan), "3000");
        }
        fs::create_directories(root_ + "/sys/class/hwmon");
        fs::create_directory_symlink(root_ + device, root_ + node + "/device");
        fs::create_directory_symlink(root_ + node, fmt::format("{}/sys/class/hwmon/hwmon{}", root_, chips_));
        ++chips_;
    }

    void write(const std::string& path, const std::string& text) const {
        fs::create_directories(fs::path(root_ + path).parent_path());
        std::ofstream(root_ + path) << text << '\n';
    }

    std::string root_;
    int chips_ = 0;
};

/// Only reads the machine's files that are open, each from its start.
class RawRead {
public:
    explicit RawRead(const std::string& root) {
        std::set<std::string> files;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code ignored;
            const auto target = fs::read_symlink(entry.path(), ignored).string();
            if (target.starts_with(root) && fs::is_regular_file(target)) {
                files.insert(target);
            }
        }
        for (const auto& file : files) {
            files_.emplace_back(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        }
    }
    void operator()() {
        for (const auto& file : files_) {
            [[maybe_unused]] const auto length = pread(file.get(), buffer_.data(), buffer_.size(), 0);
        }
    }
    std::size_t count() const { return files_.size(); }

private:
    std::vector<Descriptor> files_;
    std::vector<char> buffer_ = std::vector<char>(4096);
};

void printAllocations(const std::string& name, const Work& work) {
    const auto before = test::allocationsOfThisThread();
    work();
    printRow(name + ": heap allocations", std::to_string(test::allocationsOfThisThread() - before), "", "", "0");
}

void measureFans(const Machine& machine) {
    const LinuxClock clock;
    LinuxSMCService service(clock, machine.root());
    SMCReader reader(service);
    std::vector<FanTelemetry> fans;
    const Work tick = [&] { reader.readFans(fans); };
    tick();
    tick();
    RawRead raw(machine.root());
    printPair(fmt::format("{} chips, {} fans, {} files, hot", machine.chips(), fans.size(), raw.count()),
              measure(
                  tick, [&] { raw(); }, 2000),
              "1.5 x");
    printPair("fans, paced",
              measure(
                  tick, [&] { raw(); }, 30, std::chrono::milliseconds{500}),
              "1.5 x");
    printAllocations("fans", tick);
}

void measureTemperatures(const Machine& machine) {
    const LinuxClock clock;
    LinuxProcessInfoService processInfo(clock, machine.root());
    LinuxHIDEventSystem sensors(clock, machine.root());
    ThermalReader reader(sensors, processInfo);
    std::int64_t count = 0;
    const Work sample = [&] { count = reader.readThermals().sensorCount; };
    sample();
    sample();
    RawRead raw(machine.root());
    printPair(fmt::format("{} chips, {} temperatures, {} files, hot", machine.chips(), count, raw.count()),
              measure(
                  sample, [&] { raw(); }, 2000),
              "1.5 x");
    printPair("temperatures, paced",
              measure(
                  sample, [&] { raw(); }, 30, std::chrono::milliseconds{500}),
              "1.5 x");
}

}  // namespace
}  // namespace kestro::bench

int main() {
    using namespace kestro::bench;
    printHeader("Sensors of a large machine");
    const Machine machine;
    measureFans(machine);
    measureTemperatures(machine);
}
