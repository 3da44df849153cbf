#include "platform/linux/process/process_table.h"

#include "platform/linux/kernel/valid_text.h"
#include "platform/linux/process/process_stat.h"
#include "platform/posix/descriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <climits>
#include <ctime>
#include <iterator>
#include <thread>

namespace kestro {

namespace {

/// Shorter intervals are too coarse with the kernel's 10 ms ticks.
constexpr double shortestMeasure = 0.4;

/// Over longer ones a process that was busy long ago would still lead the list.
constexpr double longestMeasure = 5;

/// Beyond this number, commands of processes that have ended are forgotten.
constexpr std::size_t mostKnownCommands = 10 * ProcessTable::rowLimit;

double secondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

double ticksPerSecond() {
    static const double ticks = static_cast<double>(std::max(sysconf(_SC_CLK_TCK), 1L));
    return ticks;
}

std::uint64_t kibibytesPerPage() {
    static const auto size = static_cast<std::uint64_t>(std::max(sysconf(_SC_PAGESIZE), 1024L)) / 1024;
    return size;
}

double installedKibibytes() {
    static const double size =
        static_cast<double>(std::max(sysconf(_SC_PHYS_PAGES), 1L)) * static_cast<double>(kibibytesPerPage());
    return size;
}

bool isProcessDirectory(const char* name) {
    return name[0] >= '1' && name[0] <= '9';
}

/// Whether the program `argument` goes by the kernel's name, which is cut at 15 bytes.
bool fitsName(std::string_view argument, std::string_view name) {
    constexpr std::size_t longestName = 15;
    const auto fileName = argument.substr(argument.rfind('/') + 1);
    const bool fits = name.size() == longestName ? fileName.starts_with(name) : fileName == name;
    return fits && !fileName.empty();
}

/// The kernel's name in place of a path. It is not a path, and the last component of "kworker/0:1" would be
/// meaningless, so slashes become the look-alike U+2215. A name of only blanks would leave a row without a
/// command.
std::string nameAsCommand(std::string_view name) {
    if (name.find_first_not_of(' ') == std::string_view::npos) {
        return "?";
    }
    std::string text = validText(name);
    constexpr std::string_view divisionSlash = "\u2215";
    for (auto at = text.find('/'); at != std::string::npos; at = text.find('/', at)) {
        text.replace(at, 1, divisionSlash);
    }
    return text;
}

}  // namespace

ProcessTable::Time ProcessTable::ofThisMachine() {
    return {[] { return secondsOf(CLOCK_BOOTTIME); }, [] { return secondsOf(CLOCK_MONOTONIC); },
            [](double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }};
}

ProcessTable::ProcessTable(const std::string& root, Time time)
    : procDescriptor_(open((root + "/proc").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      time_(std::move(time)) {}

ProcessTable::~ProcessTable() {
    if (procDescriptor_ >= 0) {
        close(procDescriptor_);
    }
}

bool ProcessTable::read(const char* directoryName, Process& process) const {
    std::array<char, NAME_MAX + 8> path;
    *fmt::format_to_n(path.data(), path.size() - 1, "{}/stat", directoryName).out = '\0';
    const Descriptor file(openat(procDescriptor_, path.data(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file.isOpen()) {
        return false;
    }
    std::array<char, 2048> text;
    const auto length = ::read(file.get(), text.data(), text.size());
    const auto stat =
        length > 0 ? parseProcessStat({text.data(), static_cast<std::size_t>(length)}) : std::nullopt;
    if (!stat) {
        return false;
    }
    process.pid = stat->pid;
    process.startTicks = stat->startTicks;
    process.processorTicks = stat->processorTicks;
    process.residentPages = stat->residentPages;
    process.name.assign(stat->name);
    return true;
}

void ProcessTable::scan() {
    auto& processes = newest_.processes;
    auto& count = newest_.count = 0;
    const int listing =
        procDescriptor_ < 0 ? -1 : openat(procDescriptor_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* directory = listing < 0 ? nullptr : fdopendir(listing);
    if (directory == nullptr) {
        if (listing >= 0) {
            close(listing);
        }
        return;
    }

    while (const dirent* entry = readdir(directory)) {
        if (!isProcessDirectory(entry->d_name)) {
            continue;
        }
        if (count == processes.size()) {
            processes.emplace_back();
        }
        if (read(entry->d_name, processes[count])) {
            ++count;
        }
    }
    closedir(directory);

    const auto end = processes.begin() + static_cast<std::ptrdiff_t>(count);
    if (!std::ranges::is_sorted(processes.begin(), end, {}, &Process::pid)) {
        std::ranges::sort(processes.begin(), end, {}, &Process::pid);
    }
    newest_.time = time_.awake();
}

void ProcessTable::scanAfterAPause() {
    std::swap(newest_, baseline_);
    next_.time = -1;
    time_.wait(shortestMeasure);
    scan();
}

void ProcessTable::chooseBaseline() {
    if (next_.time >= 0 && newest_.time - next_.time >= shortestMeasure) {
        std::swap(baseline_, next_);
        next_.time = -1;
    }
}

void ProcessTable::measure() {
    const double now = time_.sinceBoot();
    const double elapsed = newest_.time - baseline_.time;
    std::size_t earlier = 0;
    for (std::size_t index = 0; index < newest_.count; ++index) {
        auto& process = newest_.processes[index];
        while (earlier < baseline_.count && baseline_.processes[earlier].pid < process.pid) {
            ++earlier;
        }
        const auto* before = earlier < baseline_.count ? &baseline_.processes[earlier] : nullptr;
        const bool known =
            before != nullptr && before->pid == process.pid && before->startTicks == process.startTicks;
        // Start times have tick resolution: a process started within the last tick could show any value.
        const double age = now - static_cast<double>(process.startTicks) / ticksPerSecond();
        const double life = age < 0 ? 0 : std::max(age, 1 / ticksPerSecond());
        const double seconds = known ? elapsed : life;
        const auto ticksBefore = known ? before->processorTicks : 0;
        const auto ticks = process.processorTicks > ticksBefore ? process.processorTicks - ticksBefore : 0;
        process.processorPercent = seconds > 0 ? static_cast<double>(ticks) / ticksPerSecond() / seconds * 100 : 0;
    }
}

const std::string& ProcessTable::command(const Process& process) {
    auto& known = commands_[process.pid];
    if (known.text.empty() || known.startTicks != process.startTicks || known.name != process.name) {
        known = {process.startTicks, process.name, readCommand(process)};
    }
    return known.text;
}

std::string ProcessTable::readCommand(const Process& process) const {
    std::array<char, 32> path;
    *fmt::format_to_n(path.data(), path.size() - 1, "{}/exe", process.pid).out = '\0';
    std::array<char, PATH_MAX> target;
    const auto length = readlinkat(procDescriptor_, path.data(), target.data(), target.size());
    if (length <= 0) {
        // Those of other users are not readable.
        const std::string argument = fittingArgument(process);
        return argument.empty() ? nameAsCommand(process.name) : argument;
    }
    std::string_view text(target.data(), static_cast<std::size_t>(length));
    constexpr std::string_view deleted = " (deleted)";
    if (text.ends_with(deleted)) {
        text.remove_suffix(deleted.size());
    }
    return validText(text);
}

std::string ProcessTable::fittingArgument(const Process& process) const {
    // Kernel threads have neither memory nor arguments.
    if (process.residentPages == 0) {
        return {};
    }
    std::array<char, 32> path;
    *fmt::format_to_n(path.data(), path.size() - 1, "{}/cmdline", process.pid).out = '\0';
    const Descriptor file(openat(procDescriptor_, path.data(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    std::array<char, PATH_MAX> text;
    const auto length = file.isOpen() ? ::read(file.get(), text.data(), text.size()) : 0;
    std::string_view rest(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    // A script is named after its file, but follows its interpreter and that program's only option. A process may
    // write anything there; relative paths mean nothing here.
    constexpr int furthestScript = 2;
    for (int position = 0; position <= furthestScript && !rest.empty(); ++position) {
        const auto argument = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(argument.size() + 1, rest.size()));
        const bool isBareName = position == 0 && argument.find('/') == argument.npos;
        if ((isBareName || argument.starts_with('/')) && fitsName(argument, process.name)) {
            return validText(argument);
        }
    }
    return {};
}

std::string ProcessTable::list(Order order) {
    const std::lock_guard guard(mutex_);
    scan();
    chooseBaseline();
    const bool isBaselineOld = baseline_.time < 0 || newest_.time - baseline_.time > longestMeasure;
    if (isBaselineOld && newest_.count > 0) {
        scanAfterAPause();
    }
    measure();

    ranking_.resize(newest_.count);
    for (std::uint32_t index = 0; index < ranking_.size(); ++index) {
        ranking_[index] = index;
    }
    const auto rows = std::min(rowLimit, ranking_.size());
    std::ranges::partial_sort(ranking_, ranking_.begin() + static_cast<std::ptrdiff_t>(rows),
                              [&](std::uint32_t left, std::uint32_t right) {
                                  const auto& a = newest_.processes[left];
                                  const auto& b = newest_.processes[right];
                                  if (order == Order::processor && a.processorPercent != b.processorPercent) {
                                      return a.processorPercent > b.processorPercent;
                                  }
                                  if (a.residentPages != b.residentPages) {
                                      return a.residentPages > b.residentPages;
                                  }
                                  return a.pid < b.pid;
                              });

    if (commands_.size() > mostKnownCommands) {
        commands_.clear();
    }
    std::string table = "    PID  %CPU %MEM      RSS COMM\n";
    for (std::size_t row = 0; row < rows; ++row) {
        const auto& process = newest_.processes[ranking_[row]];
        const auto resident = process.residentPages * kibibytesPerPage();
        fmt::format_to(std::back_inserter(table), "{:7} {:5.1f} {:4.1f} {:8} {}\n", process.pid,
                       process.processorPercent, static_cast<double>(resident) / installedKibibytes() * 100,
                       resident, command(process));
    }

    if (next_.time < 0) {
        std::swap(newest_, next_);
    }
    return table;
}

}  // namespace kestro
