#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/telemetry/process_info_item.h"

namespace kestro {

class CommandRunner;

/// Lists the processes that use most of the processor or of the memory, by running the system's process tool,
/// which sorts them. Keeps no state. Any background thread; waits for the tool.
class ProcessReader {
public:
    explicit ProcessReader(CommandRunner& commandRunner) : commandRunner_(commandRunner) {}
    ProcessReader(const ProcessReader&) = delete;
    ProcessReader& operator=(const ProcessReader&) = delete;

    /// The process-wide reader on the current platform, made at first use.
    static ProcessReader& shared();

    /// At most `limit` processes in the tool's order, but always one when there is any, however small the
    /// limit. Empty when the tool cannot be run or prints no text.
    std::vector<ProcessInfoItem> readTopProcesses(bool sortByCPU, std::int64_t limit);

private:
    CommandRunner& commandRunner_;
};

/// The processes in the tool's output, which starts with a line of headers. Lines that are no process, and
/// the tool's own, are left out.
std::vector<ProcessInfoItem> processesOfListing(std::string_view listing, std::int64_t limit);

/// The short name of a command: its last path component; a helper of an application is named after it,
/// such as "Mail (Renderer)".
std::string processDisplayName(std::string_view command);

}  // namespace kestro
