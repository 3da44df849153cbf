#pragma once

#include "core/telemetry/process_info_item.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestro {

class CommandRunner;

/// Lists the processes that use the most CPU or memory by running the system's process tool, which sorts them.
/// Stateless. Any background thread; blocks until the tool ends.
class ProcessReader {
public:
    explicit ProcessReader(CommandRunner& commandRunner) : commandRunner_(commandRunner) {}
    ProcessReader(const ProcessReader&) = delete;
    ProcessReader& operator=(const ProcessReader&) = delete;

    /// The process-wide reader on the current platform, created on first use.
    static ProcessReader& shared();

    /// At most `limit` processes in the tool's order, but at least one if there are any, however small the limit.
    /// Empty if the tool cannot be run or its output is not text.
    std::vector<ProcessInfoItem> readTopProcesses(bool sortByCPU, std::int64_t limit);

private:
    CommandRunner& commandRunner_;
};

/// Parses the tool's output, which starts with a header line. Skips lines that are not processes, and the tool's
/// own.
std::vector<ProcessInfoItem> processesOfListing(std::string_view listing, std::int64_t limit);

/// The short name of a command: its last path component. A helper is named after its application, as in "Mail
/// (Renderer)".
std::string processDisplayName(std::string_view command);

}  // namespace kestro
