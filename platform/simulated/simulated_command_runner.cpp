#include "platform/simulated/simulated_command_runner.h"

#include <fmt/format.h>

#include <algorithm>

namespace kestro {

namespace {

constexpr std::uint32_t processChannel = 400;
constexpr double residentKiBOfMachine = 33'554'432;

}  // namespace

SimulatedCommandRunner::SimulatedCommandRunner(const SimulatedPattern& pattern) : pattern_(pattern) {
    processes = {
        {4821, 38.2, 421'888, "/usr/bin/clang"},
        {388, 21.4, 1'153'434, "/System/Library/PrivateFrameworks/SkyLight.framework/Resources/WindowServer"},
        {1204, 9.8, 2'411'725, "/Applications/Safari.app/Contents/MacOS/Safari"},
        {0, 6.1, 325'632, "kernel_task"},
        {1377, 5.2, 702'464,
         "/Applications/Mail.app/Contents/Frameworks/Mail Helper (Renderer).app/Contents/MacOS/"
         "Mail Helper (Renderer)"},
        {902, 3.4, 167'936, "/System/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal"},
        {1391, 2.7, 248'832,
         "/Applications/Mail.app/Contents/Frameworks/Mail Helper.app/Contents/MacOS/Mail Helper"},
        {511, 2.0, 94'208, "/System/Library/Frameworks/CoreServices.framework/Support/mds_stores"},
        {2210, 1.6, 893'952, "/Applications/Photo Studio.app/Contents/MacOS/Photo Studio"},
        {1198, 1.1, 356'352, "/Applications/Mail.app/Contents/MacOS/Mail"},
        {345, 0.8, 61'440, "/usr/libexec/trustd"},
        {301, 0.4, 38'912, "/usr/sbin/bluetoothd"},
        {640, 0.2, 184'320, "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder"},
        {5120, 0.1, 5'120, "/bin/ps"},
    };
}

std::optional<CommandOutput> SimulatedCommandRunner::run(const std::string& executable,
                                                         const std::vector<std::string>& arguments) {
    calls_.push_back({executable, arguments});
    if (failure.strikes()) {
        return std::nullopt;
    }
    if (const auto fixed = outputs.find(executable); fixed != outputs.end()) {
        return CommandOutput{fixed->second, 0};
    }
    if (executable == "/bin/ps") {
        return CommandOutput{processList(std::ranges::count(arguments, "-m") > 0), 0};
    }
    if (executable == "/usr/bin/pmset") {
        return CommandOutput{powerReport(), 0};
    }
    return std::nullopt;
}

std::string SimulatedCommandRunner::processList(bool sortedByMemory) const {
    std::vector<SimulatedProcess> rows = processes;
    for (SimulatedProcess& row : rows) {
        row.cpuPercent *= 1 + 0.3 * pattern_.wave(processChannel + static_cast<std::uint32_t>(row.pid));
    }
    if (sortedByMemory) {
        std::ranges::stable_sort(rows, std::greater(), &SimulatedProcess::residentKiB);
    } else {
        std::ranges::stable_sort(rows, std::greater(), &SimulatedProcess::cpuPercent);
    }
    std::string text = "  PID  %CPU %MEM      RSS COMM\n";
    for (const SimulatedProcess& row : rows) {
        text += fmt::format("{:5} {:5.1f} {:4.1f} {:8} {}\n", row.pid, row.cpuPercent,
                            static_cast<double>(row.residentKiB) / residentKiBOfMachine * 100, row.residentKiB,
                            row.command);
    }
    return text;
}

std::string SimulatedCommandRunner::powerReport() const {
    return fmt::format(
        "System-wide power settings:\n"
        "Currently in use:\n"
        " standby              1\n"
        " Sleep On Power Button 1\n"
        " hibernatefile        /var/vm/sleepimage\n"
        " disksleep            10\n"
        " sleep                1 (sleep prevented by powerd)\n"
        " displaysleep         10\n"
        " tcpkeepalive         1\n"
        " powermode            {}\n"
        " womp                 1\n",
        powerMode);
}

}  // namespace kestro
