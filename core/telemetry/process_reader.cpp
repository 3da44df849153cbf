#include "core/telemetry/process_reader.h"

#include "core/base/text.h"
#include "core/platform/command_runner.h"
#include "core/platform/platform.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace kestro {

namespace {

constexpr std::string_view bundleMark = ".app/";

/// Removes the text up to the next run of spaces, and that run, from the front of `rest`. Other white space may be
/// part of a command.
std::string_view takeUpToSpaces(std::string_view& rest) {
    const auto field = rest.substr(0, rest.find(' '));
    rest.remove_prefix(field.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    return field;
}

bool isSystemCommand(std::string_view command) {
    return command.starts_with("/System/") || command.starts_with("/usr/libexec/") ||
           command.starts_with("/usr/sbin/");
}

std::string memoryText(double mebibytes) {
    return mebibytes >= 1024 ? fmt::format("{:.1f} GB", mebibytes / 1024) : fmt::format("{:.0f} MB", mebibytes);
}

/// Ignores trailing slashes, as is usual for file names.
std::string_view lastPathComponent(std::string_view path) {
    const auto last = path.find_last_not_of('/');
    if (last == path.npos) {
        return path.substr(0, 1);
    }
    path = path.substr(0, last + 1);
    return path.substr(path.find_last_of('/') + 1);
}

void removeAll(std::string& text, std::string_view part) {
    for (auto at = text.find(part); at != text.npos; at = text.find(part, at)) {
        text.erase(at, part.size());
    }
}

/// One line of the listing; nullopt when it is not a process, or is the tool itself.
std::optional<ProcessInfoItem> processOfLine(std::string_view line) {
    std::string_view rest = trimmed(line);
    const auto id = parseNumber<std::int32_t>(takeUpToSpaces(rest));
    const auto cpuPercent = parseNumber<double>(takeUpToSpaces(rest));
    takeUpToSpaces(rest);  // %mem
    const auto residentKiB = parseNumber<double>(takeUpToSpaces(rest));
    if (!id || !cpuPercent || !residentKiB || rest.empty() || rest.ends_with("/ps")) {
        return std::nullopt;
    }
    const double memoryMB = *residentKiB / 1024;
    return ProcessInfoItem{*id,      processDisplayName(rest), std::string(rest),    *cpuPercent,
                           memoryMB, memoryText(memoryMB),     isSystemCommand(rest)};
}

}  // namespace

ProcessReader& ProcessReader::shared() {
    static auto* const reader = new ProcessReader(Platform::current().commandRunner);
    return *reader;
}

std::vector<ProcessInfoItem> ProcessReader::readTopProcesses(bool sortByCPU, std::int64_t limit) {
    const std::vector<std::string> arguments =
        sortByCPU ? std::vector<std::string>{"-A", "-o", "pid,%cpu,%mem,rss,comm", "-r"}
                  : std::vector<std::string>{"-A", "-m", "-o", "pid,%cpu,%mem,rss,comm"};
    const auto output = commandRunner_.run("/bin/ps", arguments);
    if (!output || !isValidUtf8(output->standardOutput)) {
        return {};
    }
    return processesOfListing(output->standardOutput, limit);
}

std::vector<ProcessInfoItem> processesOfListing(std::string_view listing, std::int64_t limit) {
    std::vector<ProcessInfoItem> processes;
    auto lineEnd = listing.find('\n');
    while (lineEnd != listing.npos) {
        listing.remove_prefix(lineEnd + 1);
        lineEnd = listing.find('\n');
        auto process = processOfLine(listing.substr(0, lineEnd));
        if (!process) {
            continue;
        }
        processes.push_back(*std::move(process));
        if (std::ssize(processes) >= limit) {
            break;
        }
    }
    return processes;
}

std::string processDisplayName(std::string_view command) {
    const std::string_view base = lastPathComponent(command);
    const auto mark = command.find(bundleMark);
    if (mark == command.npos) {
        return std::string(base);
    }
    const auto bundle = command.substr(0, mark);
    const auto application = bundle.substr(bundle.find_last_of('/') + 1);
    if (base == application || base.find("Helper") == base.npos) {
        return std::string(base);
    }
    const std::string helper = fmt::format("{} Helper", application);
    std::string role(base);
    removeAll(role, helper);
    removeAll(role, "(");
    removeAll(role, ")");
    const auto rest = trimmed(role);
    return rest.empty() ? helper : fmt::format("{} ({})", application, rest);
}

}  // namespace kestro
